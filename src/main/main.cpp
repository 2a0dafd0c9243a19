#include "app/AppDelegate.h"
#include "main/Desktop.h"
#include "main/Session.h"
#include "main/remote/CommandLine.h"
#include "main/remote/CommandSender.h"
#include "main/remote/RemoteControl.h"
#include "main/remote/SingleInstance.h"
#include "platform/posix/Memory.h"
#include "platform/posix/ParentProcess.h"
#include "platform/qt/Artwork.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <optional>

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
void prepareQt(DesktopKind kind, bool busExists)
{
    qInstallMessageHandler(writeToStandardError);
    qputenv("QT_QPA_PLATFORM", qtPlatformOf(kind));
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

// False if the program cannot do it at all; if it cannot do it yet, or in this session, it goes on.
bool performFirst(AppDelegate& delegate, Command command)
{
    const CommandResult result = delegate.perform(command);
    if (result != CommandResult::done)
        tell(problemOf(command, result));
    return result != CommandResult::unavailable;
}

int runDesktop(DesktopKind kind, RemoteControl& remoteControl, std::optional<Command> first)
try {
    const auto desktop = makeDesktop(kind);
    AppDelegate delegate(desktop->platform(), desktop->views());
    remoteControl.serve(
        {[&delegate](Command command) { return delegate.perform(command); },
         [&delegate] { delegate.activate(); },
         [&delegate] { return statusReport(delegate.status()); }});
    delegate.applicationDidFinishLaunching();
    const bool goesOn = !first || performFirst(delegate, *first);
    const int status = goesOn ? desktop->run() : 1;
    remoteControl.stop();
    delegate.applicationWillTerminate();
    desktop->finishBackgroundWork();
    return status;
} catch (const DisplayUnusable& problem) {
    tell(problem.what());
    return 1;
}

// Without unwinding: the bus library's thread works on while the library's own data would go, and
// complains of it on standard error.
[[noreturn]] void endAtOnce(int status)
{
    std::quick_exit(status);
}

int printReply(const CommandReply& reply)
{
    if (reply.outcome == CommandReply::Outcome::done)
        return 0;
    const bool running = reply.outcome != CommandReply::Outcome::notRunning;
    tell(running ? reply.problem : "Tallowbay is not running");
    return 1;
}

// Not running is an answer, too, so it goes where answers go.
int printStatus(const CommandReply& reply)
{
    if (reply.outcome == CommandReply::Outcome::failed)
        return printReply(reply);
    const bool running = reply.outcome == CommandReply::Outcome::done;
    std::cout << (running ? reply.answer : "Tallowbay is not running.\n") << std::flush;
    return running ? 0 : 1;
}

// To the program that runs already.
int handOver(std::optional<Command> command, bool busExists)
{
    if (!command) {
        tell("Tallowbay is already running");
        if (busExists)
            activateRunningProgram();
        return 0;
    }
    if (!busExists) {
        tell("Tallowbay runs, but cannot be reached: there is no session bus");
        return 1;
    }
    return printReply(sendCommand(*command));
}

int startProgram(DesktopKind kind, char* programName, std::optional<Command> command)
{
    posix::giveLargeBlocksBack();
    posix::beKnownToChildren();
    const bool busExists = hasSessionBus();
    prepareQt(kind, busExists);
    int argumentCount = 1;
    char* arguments[] = {programName, nullptr};
    QApplication application(argumentCount, arguments);
    forgetQtEnvironment();
    introduce(application);
    RemoteControl remoteControl;
    SingleInstance instance(instanceLockFile());
    if (instance.acquire(busExists) == SingleInstance::Result::another)
        endAtOnce(handOver(command, busExists));
    if (const auto limits = sessionLimits(kind))
        tell(*limits);
    return runDesktop(kind, remoteControl, command);
}

// Asks something of the program that runs. Needs no display.
int askOnly(char* programName, const std::function<int()>& ask)
{
    if (!hasSessionBus()) {
        tell("there is no session bus, by which Tallowbay is reached");
        return 1;
    }
    int argumentCount = 1;
    char* arguments[] = {programName, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    endAtOnce(ask());
}

int start(char* programName, std::optional<Command> command)
{
    if (command && !startsProgram(*command))
        return askOnly(programName, [&] { return printReply(sendCommand(*command)); });
    const auto choice = chooseDesktop(SessionEnvironment::ofProcess());
    const auto* kind = std::get_if<DesktopKind>(&choice);
    const auto problem = kind ? displayProblem(*kind) : std::get<std::string>(choice);
    if (problem) {
        tell(*problem);
        return 1;
    }
    return startProgram(*kind, programName, command);
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const auto asked = parseCommandLine({arguments + 1, arguments + argumentCount});
    if (const auto* answer = std::get_if<PrintAndExit>(&asked))
        return print(*answer);
    if (std::holds_alternative<ShowStatus>(asked))
        return askOnly(arguments[0], [] { return printStatus(askForStatus()); });
    const auto* run = std::get_if<RunCommand>(&asked);
    return start(arguments[0], run ? std::optional(run->command) : std::nullopt);
}
