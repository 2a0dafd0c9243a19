#include "platform/x11/windows/X11Queries.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace tallowbay::x11 {

namespace {

template <typename Reply> using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply> Owned<Reply> held(Reply* reply)
{
    return {reply, &std::free};
}

constexpr xcb_atom_t noAtom = XCB_ATOM_NONE;

xcb_atom_t atom(xcb_connection_t* server, const std::string& name, bool onlyIfExists = true)
{
    const auto cookie =
        xcb_intern_atom(server, onlyIfExists, static_cast<std::uint16_t>(name.size()), name.data());
    const auto reply = held(xcb_intern_atom_reply(server, cookie, nullptr));
    return reply ? reply->atom : noAtom;
}

// Null if there is no such window.
Owned<xcb_get_property_reply_t> readProperty(
    xcb_connection_t* server, xcb_window_t window, const std::string& name)
{
    constexpr std::uint32_t mostWords = 16'384;
    const auto property = atom(server, name);
    if (window == XCB_NONE || property == noAtom)
        return held<xcb_get_property_reply_t>(nullptr);
    const auto cookie =
        xcb_get_property(server, false, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords);
    return held(xcb_get_property_reply(server, cookie, nullptr));
}

} // namespace

ResourceNumbers resourceNumbersOf(xcb_connection_t& server)
{
    const auto* setup = xcb_get_setup(&server);
    return setup ? ResourceNumbers{setup->resource_id_base, setup->resource_id_mask}
                 : ResourceNumbers{};
}

// A toolkit runs on the display's default screen; servers with several of them are history, but one
// may be addressed as ":0.1".
std::string withScreenNumber(const std::string& prefix)
{
    int display = 0;
    int screen = 0;
    char* host = nullptr;
    if (xcb_parse_display(nullptr, &host, &display, &screen))
        std::free(host);
    return prefix + std::to_string(screen);
}

xcb_window_t X11Queries::root() const
{
    const auto* setup = xcb_get_setup(server);
    return setup ? xcb_setup_roots_iterator(setup).data->root : XCB_NONE;
}

xcb_window_t X11Queries::selectionOwner(const std::string& selection) const
{
    const auto name = atom(server, selection);
    if (name == noAtom)
        return XCB_NONE;
    const auto reply =
        held(xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, name), nullptr));
    return reply ? reply->owner : XCB_NONE;
}

std::vector<std::uint32_t> X11Queries::values(
    xcb_window_t window, const std::string& property) const
{
    const auto reply = readProperty(server, window, property);
    if (!reply || reply->format != 32)
        return {};
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

std::string X11Queries::bytes(xcb_window_t window, const std::string& property) const
{
    const auto reply = readProperty(server, window, property);
    if (!reply || reply->format != 8)
        return {};
    const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
    return {bytes, bytes + reply->value_len};
}

bool X11Queries::has(xcb_window_t window, const std::string& property) const
{
    const auto reply = readProperty(server, window, property);
    return reply && reply->type != noAtom;
}

void X11Queries::set(
    xcb_window_t window, const std::string& property,
    const std::vector<std::uint32_t>& values) const
{
    if (const auto name = atom(server, property, false); name != noAtom)
        xcb_change_property(
            server, XCB_PROP_MODE_REPLACE, window, name, XCB_ATOM_CARDINAL, 32,
            static_cast<std::uint32_t>(values.size()), values.data());
}

void X11Queries::remove(xcb_window_t window, const std::string& property) const
{
    if (const auto name = atom(server, property); name != noAtom)
        xcb_delete_property(server, window, name);
}

void X11Queries::addAtoms(
    xcb_window_t window, const std::string& property, const std::vector<std::string>& names) const
{
    const std::vector<std::uint32_t> there = values(window, property);
    for (const std::string& name : names) {
        const xcb_atom_t added = atom(server, name, false);
        if (std::ranges::find(there, added) == there.end())
            xcb_change_property(
                server, XCB_PROP_MODE_APPEND, window, atom(server, property, false), XCB_ATOM_ATOM,
                32, 1, &added);
    }
}

void X11Queries::tellManager(
    xcb_window_t about, const std::string& message, std::uint32_t first, std::uint32_t second) const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = about;
    event.type = atom(server, message, false);
    event.data.data32[0] = first;
    event.data.data32[1] = second;
    xcb_send_event(
        server, false, root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char*>(&event));
}

xcb_window_t X11Queries::windowAt(int x, int y) const
{
    xcb_window_t found = root();
    for (xcb_window_t next = found; next != XCB_NONE;) {
        found = next;
        const auto cookie = xcb_translate_coordinates(
            server, root(), found, static_cast<std::int16_t>(x), static_cast<std::int16_t>(y));
        const auto reply = held(xcb_translate_coordinates_reply(server, cookie, nullptr));
        next = reply ? reply->child : XCB_NONE;
    }
    return found;
}

xcb_window_t X11Queries::focusedWindow() const
{
    const auto reply =
        held(xcb_get_input_focus_reply(server, xcb_get_input_focus(server), nullptr));
    return reply && reply->focus != XCB_INPUT_FOCUS_POINTER_ROOT ? reply->focus : XCB_NONE;
}

int X11Queries::widthOf(xcb_window_t window) const
{
    const auto reply =
        held(xcb_get_geometry_reply(server, xcb_get_geometry(server, window), nullptr));
    return reply ? reply->width : 0;
}

bool X11Queries::isOwn(xcb_window_t window) const
{
    const ResourceNumbers own = resourceNumbersOf(*server);
    return own.base != 0 && (window & ~own.mask) == own.base;
}

} // namespace tallowbay::x11
