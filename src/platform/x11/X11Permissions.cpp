#include "platform/x11/X11Permissions.h"

#include <string_view>

#include <xcb/randr.h>

namespace tallowbay::x11 {
namespace {

Permission unavailable(std::string reason)
{
    return {Permission::State::unavailable, std::move(reason)};
}

bool hasExtension(xcb_connection_t* connection, std::string_view name)
{
    const auto reply = owned(xcb_query_extension_reply(
        connection, xcb_query_extension(connection, std::uint16_t(name.size()), name.data()),
        nullptr));
    return reply && reply->present;
}

std::string outputName(xcb_connection_t* connection, xcb_randr_output_t output)
{
    const auto info = owned(xcb_randr_get_output_info_reply(
        connection, xcb_randr_get_output_info(connection, output, XCB_CURRENT_TIME), nullptr));
    if (!info)
        return {};
    return {
        reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
        std::size_t(xcb_randr_get_output_info_name_length(info.get()))};
}

// Newer ones have an extension of that name, older ones outputs.
bool isXwayland(xcb_connection_t* connection, xcb_window_t root)
{
    if (hasExtension(connection, "XWAYLAND"))
        return true;
    if (!hasExtension(connection, "RANDR"))
        return false;
    const auto screen = owned(xcb_randr_get_screen_resources_current_reply(
        connection, xcb_randr_get_screen_resources_current(connection, root), nullptr));
    if (!screen || screen->num_outputs == 0)
        return false;
    const auto* outputs = xcb_randr_get_screen_resources_current_outputs(screen.get());
    return outputName(connection, outputs[0]).starts_with("XWAYLAND");
}

} // namespace

X11Permissions::X11Permissions(X11Session& session, const char* waylandDisplay)
    : keys{Permission::State::granted, {}}
    , screen{Permission::State::granted, {}}
{
    if ((waylandDisplay && *waylandDisplay) || isXwayland(session.connection(), session.root())) {
        keys = unavailable("A Wayland session shows no program the keys of the others");
        screen = unavailable("A Wayland session shows no program the whole screen unasked");
    } else if (!session.seesKeys()) {
        keys = unavailable("The X server lacks version 2.2 of the XInput extension");
    } else if (!session.typesKeys()) {
        keys = unavailable("The X server lacks the XTEST extension");
    }
}

} // namespace tallowbay::x11
