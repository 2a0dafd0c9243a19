#include "platform/x11/Xwayland.h"

#include "platform/posix/Environment.h"
#include "platform/x11/X11Event.h"

#include <cstddef>
#include <string>
#include <string_view>

#include <xcb/randr.h>

namespace tallowbay::x11 {

namespace {

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

bool isWaylandSession(xcb_connection_t* connection)
{
    if (posix::environmentIsWayland())
        return true;
    if (!connection || xcb_connection_has_error(connection) != 0)
        return false;
    return isXwayland(connection, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root);
}

} // namespace tallowbay::x11
