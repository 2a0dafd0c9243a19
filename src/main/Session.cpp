#include "main/Session.h"

#include "platform/posix/Environment.h"

#include <filesystem>
#include <memory>

#include <xcb/xcb.h>

namespace tallowbay {

using posix::environmentFolder;
using posix::environmentText;

namespace {

bool xServerAnswers()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0;
}

} // namespace

std::optional<std::string> displayProblem(DesktopKind)
{
    if (xServerAnswers())
        return std::nullopt;
    return "the display " + environmentText("DISPLAY").value_or("")
        + " cannot be reached: no X server answers there, or it lets nobody in";
}

std::optional<std::string> sessionLimits(const SessionEnvironment& session)
{
    if (!session.isWayland())
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
