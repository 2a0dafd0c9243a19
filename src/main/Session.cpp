#include "main/Session.h"

#include "platform/posix/Environment.h"
#include "platform/x11/Xwayland.h"

#include <filesystem>
#include <memory>

#include <xcb/xcb.h>

namespace tallowbay {

using posix::environmentFolder;
using posix::environmentText;

namespace {

using XConnection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

XConnection connectToXServer()
{
    return {xcb_connect(nullptr, nullptr), &xcb_disconnect};
}

} // namespace

std::optional<std::string> displayProblem(DesktopKind)
{
    if (xcb_connection_has_error(connectToXServer().get()) == 0)
        return std::nullopt;
    return "the display " + environmentText("DISPLAY").value_or("")
        + " cannot be reached: no X server answers there, or it lets nobody in";
}

std::optional<std::string> sessionLimits(DesktopKind)
{
    if (!x11::isWaylandSession(connectToXServer().get()))
        return std::nullopt;
    return "this is a Wayland session: pastes are not seen in it, so a batch ends only when it is "
           "cleared";
}

bool hasSessionBus()
{
    if (environmentText("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const auto runtimeFolder = environmentFolder("XDG_RUNTIME_DIR");
    std::error_code ignored;
    return runtimeFolder && std::filesystem::is_socket(*runtimeFolder / "bus", ignored);
}

} // namespace tallowbay
