#include "main/DesktopChoice.h"

#include "platform/posix/Environment.h"

namespace tallowbay {

using posix::environmentText;

SessionEnvironment SessionEnvironment::ofProcess()
{
    return {
        environmentText("TALLOWBAY_DESKTOP"), environmentText("DISPLAY"),
        environmentText("WAYLAND_DISPLAY")};
}

std::variant<DesktopKind, std::string> chooseDesktop(const SessionEnvironment& session)
{
    if (session.forced && session.forced != "x11")
        return "TALLOWBAY_DESKTOP is \"" + *session.forced + "\", but can only be \"x11\"";
    if (session.display)
        return DesktopKind::x11;
    if (session.waylandDisplay)
        return "this Wayland session has no X server (Xwayland), which Tallowbay needs";
    return "there is no display: DISPLAY is not set; start Tallowbay from a desktop session";
}

const char* qtPlatformOf(DesktopKind)
{
    return "xcb";
}

} // namespace tallowbay
