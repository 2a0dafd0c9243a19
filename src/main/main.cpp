#include "app/AppDelegate.h"
#include "main/CommandLine.h"
#include "main/LinuxDesktop.h"
#include "main/Session.h"
#include "main/SingleInstance.h"
#include "platform/qt/Artwork.h"

#include <QApplication>

#include <cstdio>
#include <iostream>

using namespace tallowbay;

namespace {

void tell(const std::string& sentence)
{
    std::cerr << "tallowbay: " << sentence << std::endl;
}

// Standard output belongs to the program's own lines alone, and the journal would hide the rest.
void writeToStandardError(QtMsgType, const QMessageLogContext&, const QString& message)
{
    tell(message.toStdString());
}

int print(const PrintAndExit& answer)
{
    (answer.stream == PrintAndExit::Stream::output ? std::cout : std::cerr) << answer.text;
    return answer.status;
}

// What Qt reads from the environment as it starts. OpenGL is never used, and would take more memory
// than all the rest of the program.
void prepareQt(bool busExists)
{
    qInstallMessageHandler(writeToStandardError);
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    if (!busExists)
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:"); // else the library starts a bus
}

// The programs that we start must decide for themselves.
void forgetQtEnvironment()
{
    qunsetenv("QT_QPA_PLATFORM");
    qunsetenv("QT_XCB_GL_INTEGRATION");
}

void introduce(QApplication&)
{
    QApplication::setApplicationName(QStringLiteral("tallowbay"));
    QApplication::setApplicationDisplayName(QStringLiteral("Tallowbay"));
    QApplication::setApplicationVersion(QStringLiteral(TALLOWBAY_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("com.quarnel.tallowbay"));
    QApplication::setWindowIcon(qt::Artwork().icon(QStringLiteral("com.quarnel.tallowbay")));
}

int runDesktop()
try {
    LinuxDesktop desktop;
    AppDelegate delegate(desktop.platform(), {});
    delegate.applicationDidFinishLaunching();
    const int status = desktop.run();
    delegate.applicationWillTerminate();
    desktop.finishBackgroundWork();
    return status;
} catch (const DisplayUnusable& problem) {
    tell(problem.what());
    return 1;
}

int startProgram(char* programName)
{
    if (const auto problem = displayProblem()) {
        tell(*problem);
        return 1;
    }
    const bool busExists = hasSessionBus();
    prepareQt(busExists);
    int argumentCount = 1;
    char* arguments[] = {programName, nullptr};
    QApplication application(argumentCount, arguments);
    forgetQtEnvironment();
    introduce(application);
    SingleInstance instance(instanceLockFile());
    if (instance.acquire(busExists) == SingleInstance::Result::another) {
        tell("Tallowbay is already running");
        return 0;
    }
    if (const auto limits = sessionLimits())
        tell(*limits);
    return runDesktop();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const auto asked = parseCommandLine({arguments + 1, arguments + argumentCount});
    if (const auto* answer = std::get_if<PrintAndExit>(&asked))
        return print(*answer);
    return startProgram(arguments[0]);
}
