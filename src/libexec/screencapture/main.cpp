// screencapture FILE       the whole screen
// screencapture -i FILE    a region that the user selects
//
// Writes a PNG at device pixels, as a new file that only its user can read. FILE is complete or
// untouched, and never anything but a regular file: a link that somebody planted is not followed.
// Ends with status 0 exactly if it was written; a user who cancels leaves no file and status 1.
// Where no program may see the screen, the status is 69 and nothing is shown.

#include "libexec/screencapture/FrozenDesktop.h"
#include "libexec/screencapture/SelectionOverlay.h"
#include "platform/posix/ParentProcess.h"
#include "platform/posix/files/PrivateFile.h"
#include "platform/x11/Xwayland.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImageWriter>

#include <xcb/xcb.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace tallowbay::screencapture;

constexpr auto usage = "usage: screencapture FILE       write the whole screen to FILE, as PNG\n"
                       "       screencapture -i FILE    write a region of it that you select\n"
                       "\n"
                       "Drag to select. Or move the pointer with the arrow keys (Shift: faster),\n"
                       "press Space where the region begins and again where it ends.\n"
                       "Esc or the right button cancels.\n"
                       "\n"
                       "Ends with 0 if FILE was written, 69 if this session lets no program see\n"
                       "its screen, else with 1.\n";

struct Request {
    bool interactive = false;
    std::string file;
};

std::optional<Request> parsed(const std::vector<std::string>& arguments)
{
    if (arguments.size() == 1 && !arguments[0].starts_with("-"))
        return Request{false, arguments[0]};
    if (arguments.size() == 2 && arguments[0] == "-i")
        return Request{true, arguments[1]};
    return std::nullopt;
}

constexpr int screenHidden = 69; // what "service unavailable" is elsewhere, too

int failed(const std::string& reason, int status = 1)
{
    std::fprintf(stderr, "screencapture: %s\n", reason.c_str());
    return status;
}

struct Session {
    bool hasDisplay = false;
    bool isWayland = false;

    static Session ofEnvironment();
};

// By the session and not by the result: the X server of a Wayland session hands out a black
// picture, and a window of ours would cover the screen with it.
Session Session::ofEnvironment()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    return {
        xcb_connection_has_error(connection.get()) == 0,
        tallowbay::x11::isWaylandSession(connection.get())};
}

int write(const QImage& image, const std::string& path)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    if (!writer.write(image))
        return failed(path + ": " + writer.errorString().toStdString());
    const QByteArray& png = buffer.data();
    if (const auto problem =
            tallowbay::posix::writePrivateFile(path, {png.data(), std::size_t(png.size())}))
        return failed(path + ": " + *problem);
    return 0;
}

int capture(const Request& request, const ScreenScales& scales)
{
    const FrozenDesktop desktop = FrozenDesktop::taken(scales);
    if (desktop.image.isNull())
        return failed("the screen cannot be read");
    if (!request.interactive)
        return write(desktop.image, request.file);
    const auto region = SelectionOverlay(desktop).run();
    if (!region)
        return 1;
    return write(desktop.image.copy(region->translated(-desktop.area.topLeft())), request.file);
}

} // namespace

int main(int argc, char** argv)
{
    tallowbay::posix::endWithParent(); // or the screen stays covered
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments == std::vector<std::string>{"--help"})
        return std::fputs(usage, stdout) < 0;
    const auto request = parsed(arguments);
    if (!request)
        return failed(std::string("cannot understand this\n") + usage);
    // Asked again when it is written; but nobody shall select a region in vain.
    if (const auto obstacle = tallowbay::posix::obstacleAt(request->file))
        return failed(request->file + ": " + *obstacle);
    const Session session = Session::ofEnvironment();
    if (session.isWayland)
        return failed("this Wayland session hides its screen from programs", screenHidden);
    if (!session.hasDisplay)
        return failed("no X display answers");
    // Qt ends the process by a signal where no display answers.
    qputenv("QT_QPA_PLATFORM", "xcb");
    const ScreenScales scales = ScreenScales::takenFromQt();
    const QGuiApplication application(argc, argv);
    return capture(*request, scales);
}
