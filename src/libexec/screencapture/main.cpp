// screencapture FILE       the whole screen
// screencapture -i FILE    a region that the user selects
//
// Writes a PNG at device pixels, as a new file that only its user can read. FILE is complete or
// untouched, and never anything but a regular file: a link that somebody planted is not followed.
// Ends with status 0 exactly if it was written; a user who cancels leaves no file and status 1.

#include "libexec/screencapture/FrozenDesktop.h"
#include "libexec/screencapture/SelectionOverlay.h"
#include "platform/posix/files/PrivateFile.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImageWriter>

#include <xcb/xcb.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

using namespace tallowbay::screencapture;

constexpr auto usage = "usage: screencapture FILE       write the whole screen to FILE, as PNG\n"
                       "       screencapture -i FILE    write a region of it that you select\n"
                       "\n"
                       "Drag to select. Or move the pointer with the arrow keys (Shift: faster),\n"
                       "press Space where the region begins and again where it ends.\n"
                       "Esc or the right button cancels.\n";

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

int failed(const std::string& reason)
{
    std::fprintf(stderr, "screencapture: %s\n", reason.c_str());
    return 1;
}

// Qt ends the process by a signal where there is none.
bool displayAnswers()
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
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
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments == std::vector<std::string>{"--help"})
        return std::fputs(usage, stdout) < 0;
    const auto request = parsed(arguments);
    if (!request)
        return failed(std::string("cannot understand this\n") + usage);
    // Asked again when it is written; but nobody shall select a region in vain.
    if (const auto obstacle = tallowbay::posix::obstacleAt(request->file))
        return failed(request->file + ": " + *obstacle);
    if (!displayAnswers())
        return failed("no X display answers");
    qputenv("QT_QPA_PLATFORM", "xcb");
    const ScreenScales scales = ScreenScales::takenFromQt();
    const QGuiApplication application(argc, argv);
    return capture(*request, scales);
}
