#include "platform/x11/X11Permissions.h"

#include <string>
#include <utility>

namespace tallowbay::x11 {
namespace {

Permission unavailable(std::string reason)
{
    return {Permission::State::unavailable, std::move(reason)};
}

} // namespace

X11Permissions::X11Permissions(X11Session& session, bool waylandSession)
    : keys{Permission::State::granted, {}}
    , screen{Permission::State::granted, {}}
{
    if (waylandSession) {
        keys = unavailable("A Wayland session shows no program the keys of the others");
        screen = unavailable("A Wayland session hides its screen from programs");
    } else if (!session.seesKeys()) {
        keys = unavailable("The X server lacks version 2.2 of the XInput extension");
    } else if (!session.typesKeys()) {
        keys = unavailable("The X server lacks the XTEST extension");
    }
}

} // namespace tallowbay::x11
