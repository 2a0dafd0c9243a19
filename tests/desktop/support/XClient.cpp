#include "desktop/support/XClient.h"

#include "desktop/support/Wait.h"

#include <array>
#include <cstring>
#include <stdexcept>

#include <poll.h>

namespace tallowbay::test {
namespace {

using namespace std::chrono_literals;

template <typename T> std::unique_ptr<T, decltype(&std::free)> owned(T* reply)
{
    return {reply, &std::free};
}

} // namespace

std::vector<std::uint32_t> XClient::Property::values() const
{
    std::vector<std::uint32_t> list(bytes.size() / 4);
    std::memcpy(list.data(), bytes.data(), list.size() * 4);
    return list;
}

XClient::XClient(const std::string& display)
    : server(xcb_connect(display.c_str(), nullptr))
{
    if (xcb_connection_has_error(connection()) != 0)
        throw std::runtime_error("No X server at " + display);
    rootWindow = xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root;
    ownWindow = xcb_generate_id(connection());
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_KEY_PRESS
        | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_create_window(
        connection(), XCB_COPY_FROM_PARENT, window(), root(), 0, 0, 600, 400, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    sync();
}

xcb_atom_t XClient::atom(std::string_view name)
{
    const auto reply = owned(xcb_intern_atom_reply(
        connection(), xcb_intern_atom(connection(), 0, std::uint16_t(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

std::string XClient::atomName(xcb_atom_t atom)
{
    const auto reply = owned(
        xcb_get_atom_name_reply(connection(), xcb_get_atom_name(connection(), atom), nullptr));
    if (!reply)
        return {};
    return {
        xcb_get_atom_name_name(reply.get()),
        std::size_t(xcb_get_atom_name_name_length(reply.get()))};
}

void XClient::takeFocus()
{
    xcb_map_window(connection(), window());
    const auto isShown = [this] {
        const auto reply = owned(xcb_get_window_attributes_reply(
            connection(), xcb_get_window_attributes(connection(), window()), nullptr));
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    };
    const auto isFocused = [this] {
        const auto reply = owned(
            xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
        return reply && reply->focus == window() && (!isFramed() || isActive());
    };
    if (!waitUntil(isShown))
        throw std::runtime_error("The window is not shown");
    if (isFramed())
        askManagerForFocus();
    else
        xcb_set_input_focus(connection(), XCB_INPUT_FOCUS_POINTER_ROOT, window(), XCB_CURRENT_TIME);
    if (!waitUntil(isFocused))
        throw std::runtime_error("The window did not get the keyboard");
}

bool XClient::isFramed()
{
    const auto tree =
        owned(xcb_query_tree_reply(connection(), xcb_query_tree(connection(), window()), nullptr));
    return tree && tree->parent != root();
}

bool XClient::isActive()
{
    const auto active = owned(xcb_get_property_reply(
        connection(),
        xcb_get_property(
            connection(), 0, root(), atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1),
        nullptr));
    return active && active->value_len == 1
        && *static_cast<xcb_window_t*>(xcb_get_property_value(active.get())) == window();
}

void XClient::askManagerForFocus()
{
    constexpr std::uint32_t fromAPager = 2;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window();
    message.type = atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = fromAPager;
    xcb_send_event(
        connection(), 0, root(),
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char*>(&message));
}

XClient::Event XClient::next(std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    xcb_flush(connection());
    while (true) {
        if (auto* event = xcb_poll_for_event(connection()))
            return {event, &std::free};
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        pollfd readable{xcb_get_file_descriptor(connection()), POLLIN, 0};
        if (left <= 0ms || xcb_connection_has_error(connection()) != 0
            || poll(&readable, 1, int(left.count())) <= 0)
            return {nullptr, &std::free};
    }
}

XClient::Event XClient::nextOf(std::uint8_t type, std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (true) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        Event event = next(left);
        if (!event || (event->response_type & 0x7f) == type)
            return event;
    }
}

void XClient::request(
    std::string_view target, std::string_view property, std::string_view selection,
    xcb_timestamp_t time)
{
    xcb_convert_selection(
        connection(), window(), atom(selection), atom(target), atom(property), time);
    xcb_flush(connection());
}

bool XClient::granted()
{
    const Event event = nextOf(XCB_SELECTION_NOTIFY);
    if (!event)
        throw std::runtime_error("The owner did not answer");
    return reinterpret_cast<xcb_selection_notify_event_t&>(*event).property != XCB_ATOM_NONE;
}

std::optional<std::string> XClient::takePieces(std::string_view property)
{
    const xcb_atom_t wanted = atom(property);
    take(property);
    std::string bytes;
    while (const Event event = nextOf(XCB_PROPERTY_NOTIFY)) {
        const auto& change = reinterpret_cast<xcb_property_notify_event_t&>(*event);
        if (change.atom != wanted || change.state != XCB_PROPERTY_NEW_VALUE)
            continue;
        const Property piece = take(property);
        if (piece.type != XCB_ATOM_NONE && piece.bytes.empty())
            return bytes;
        bytes += piece.bytes;
    }
    return std::nullopt;
}

std::optional<std::string> XClient::paste(std::string_view target, std::string_view property)
{
    request(target, property);
    if (!granted())
        return std::nullopt;
    if (look(property).type == atom("INCR"))
        return takePieces(property);
    return take(property).bytes;
}

std::vector<std::string> XClient::targets()
{
    request("TARGETS");
    std::vector<std::string> names;
    if (granted())
        for (const xcb_atom_t target : take().values())
            names.push_back(atomName(target));
    return names;
}

void XClient::setProperty(
    xcb_window_t target, std::string_view property, std::string_view type, const std::string& bytes)
{
    xcb_change_property(
        connection(), XCB_PROP_MODE_REPLACE, target, atom(property), atom(type), 8,
        std::uint32_t(bytes.size()), bytes.data());
}

void XClient::setValues(
    xcb_window_t target, std::string_view property, std::string_view type,
    const std::vector<std::uint32_t>& values)
{
    xcb_change_property(
        connection(), XCB_PROP_MODE_REPLACE, target, atom(property), atom(type), 32,
        std::uint32_t(values.size()), values.data());
}

void XClient::own(std::string_view selection)
{
    xcb_set_selection_owner(connection(), window(), atom(selection), XCB_CURRENT_TIME);
    sync();
}

void XClient::answer(const xcb_selection_request_event_t& request, bool isGranted)
{
    std::array<char, 32> message{};
    auto& notify = reinterpret_cast<xcb_selection_notify_event_t&>(message);
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = isGranted ? request.property : xcb_atom_t(XCB_ATOM_NONE);
    xcb_send_event(connection(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, message.data());
    xcb_flush(connection());
}

void XClient::sync()
{
    owned(xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
}

XClient::Property XClient::read(std::string_view name, bool remove)
{
    const auto reply = owned(xcb_get_property_reply(
        connection(),
        xcb_get_property(
            connection(), remove, window(), atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 24),
        nullptr));
    if (!reply)
        return {};
    return {
        reply->type,
        {static_cast<const char*>(xcb_get_property_value(reply.get())),
         std::size_t(xcb_get_property_value_length(reply.get()))}};
}

} // namespace tallowbay::test
