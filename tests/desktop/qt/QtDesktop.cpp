#include "desktop/qt/QtDesktop.h"

#include <QScreen>
#include <QWidget>

#include <cmath>
#include <stdexcept>

namespace tallowbay::test {

namespace {

using namespace std::chrono_literals;

void turn()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

} // namespace

QtDesktop::EnvironmentOf::EnvironmentOf(const XServer& server)
{
    qputenv("DISPLAY", QByteArray::fromStdString(server.display()));
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_XCB_GL_INTEGRATION", "none");
}

QtDesktop::QtDesktop(const XServer::Options& options)
    : xServer(options)
    , environment(xServer)
    , application(argumentCount, arguments)
{
    QApplication::setQuitOnLastWindowClosed(false);
    xServer.run({"xsetroot", "-solid", background.name().toStdString()});
}

QtDesktop::~QtDesktop() = default;

bool QtDesktop::runUntil(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        turn();
    }
    return true;
}

void QtDesktop::runFor(std::chrono::milliseconds duration)
{
    const auto end = std::chrono::steady_clock::now() + duration;
    while (std::chrono::steady_clock::now() < end)
        turn();
}

QColor QtDesktop::pixel(int x, int y) const
{
    return picture({x, y, 1, 1}).pixelColor(0, 0);
}

QImage QtDesktop::picture(const QRect& place) const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double scale = screen->devicePixelRatio();
    return QGuiApplication::primaryScreen()
        ->grabWindow(
            0, int(place.x() / scale), int(place.y() / scale),
            int(std::ceil(place.width() / scale)), int(std::ceil(place.height() / scale)))
        .toImage();
}

bool QtDesktop::focusWindow(const std::string& name) const
{
    xServer.search({"--name", name, "windowfocus", "--sync"});
    return focusedWindowName() == name;
}

std::string QtDesktop::focusedWindowName() const
{
    const auto answer = xServer.run({"xdotool", "getwindowfocus", "getwindowname"}).output;
    return answer.substr(0, answer.find('\n'));
}

std::string QtDesktop::keyboardOwner()
{
    if (!typedInto) {
        xServer.startWindowManager();
        typedInto = xServer.start({"xev"});
        if (!runUntil([this] { return focusWindow("Event Tester"); }))
            throw std::runtime_error("xev takes no keyboard: " + typedInto->errors());
    }
    return focusedWindowName();
}

} // namespace tallowbay::test
