#include "platform/x11/clipboard/SelectionReader.h"

#include "platform/x11/X11Event.h"

#include <algorithm>

#include <poll.h>

namespace tallowbay::x11 {
namespace {

using Clock = std::chrono::steady_clock;

// An owner must not make us use up the memory.
constexpr std::size_t mostBytes = 64 << 20;

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

class Reader {
public:
    Reader(const std::string& display, std::chrono::milliseconds limit)
        : end(Clock::now() + limit)
        , connection(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr))
    {
        if (!valid())
            return;
        window = xcb_generate_id(server());
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(
            server(), 0, window, xcb_setup_roots_iterator(xcb_get_setup(server())).data->root, -10,
            -10, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
            &events);
        selection = atom("CLIPBOARD");
        property = atom("TALLOWBAY_READ");
        incremental = atom("INCR");
        time = serverTime();
    }

    bool valid() const { return xcb_connection_has_error(server()) == 0; }

    // Empty if the owner refuses this form, or the time is over.
    std::optional<std::string> read(std::string_view formName)
    {
        const xcb_atom_t target = atom(formName);
        xcb_convert_selection(server(), window, selection, target, property, time);
        const auto answer = waitFor<xcb_selection_notify_event_t>(
            XCB_SELECTION_NOTIFY,
            [target](const xcb_selection_notify_event_t& event) { return event.target == target; });
        if (!answer || answer->as<xcb_selection_notify_event_t>().property == XCB_ATOM_NONE)
            return std::nullopt;
        const auto content = take();
        if (!content || content->type != incremental)
            return content ? std::optional(bytesOf(*content)) : std::nullopt;
        return readPieces();
    }

private:
    xcb_connection_t* server() const { return connection.get(); }

    xcb_atom_t atom(std::string_view name)
    {
        const auto reply = owned(xcb_intern_atom_reply(
            server(), xcb_intern_atom(server(), 0, std::uint16_t(name.size()), name.data()),
            nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    xcb_timestamp_t serverTime()
    {
        xcb_change_property(
            server(), XCB_PROP_MODE_APPEND, window, property, XCB_ATOM_STRING, 8, 0, nullptr);
        const auto event = waitFor<xcb_property_notify_event_t>(
            XCB_PROPERTY_NOTIFY, [](const auto&) { return true; });
        return event ? event->as<xcb_property_notify_event_t>().time : XCB_CURRENT_TIME;
    }

    // The property's content; removes it, which asks for the next piece.
    XcbReply<xcb_get_property_reply_t> take()
    {
        return owned(xcb_get_property_reply(
            server(),
            xcb_get_property(
                server(), 1, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                std::uint32_t(mostBytes / 4)),
            nullptr));
    }

    static std::string bytesOf(const xcb_get_property_reply_t& reply)
    {
        return {
            static_cast<const char*>(xcb_get_property_value(&reply)),
            std::size_t(xcb_get_property_value_length(&reply))};
    }

    std::optional<std::string> readPieces()
    {
        std::string bytes;
        while (bytes.size() < mostBytes) {
            const auto event = waitFor<xcb_property_notify_event_t>(
                XCB_PROPERTY_NOTIFY, [this](const xcb_property_notify_event_t& change) {
                    return change.atom == property && change.state == XCB_PROPERTY_NEW_VALUE;
                });
            const auto piece = event ? take() : nullptr;
            if (!piece)
                return std::nullopt;
            const std::string more = bytesOf(*piece);
            if (more.empty())
                return bytes;
            bytes += more;
        }
        return std::nullopt;
    }

    template <typename Event, typename Wanted>
    std::optional<X11Event> waitFor(std::uint8_t type, Wanted wanted)
    {
        xcb_flush(server());
        while (valid()) {
            if (auto* raw = xcb_poll_for_event(server())) {
                const X11Event event(raw);
                if (event.type() == type && wanted(event.as<Event>()))
                    return event;
            } else if (!waitForInput()) {
                return std::nullopt;
            }
        }
        return std::nullopt;
    }

    bool waitForInput() const
    {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        pollfd readable{xcb_get_file_descriptor(server()), POLLIN, 0};
        return left.count() > 0 && poll(&readable, 1, int(left.count())) > 0;
    }

    Clock::time_point end;
    std::unique_ptr<xcb_connection_t, Disconnect> connection;
    xcb_window_t window = XCB_NONE;
    xcb_atom_t selection = XCB_ATOM_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;
    xcb_atom_t incremental = XCB_ATOM_NONE;
    xcb_timestamp_t time = XCB_CURRENT_TIME;
};

} // namespace

std::optional<std::string> readClipboard(
    const std::string& display, std::span<const std::string_view> formNames,
    std::chrono::milliseconds limit)
{
    Reader reader(display, limit);
    if (!reader.valid())
        return std::nullopt;
    for (const std::string_view name : formNames)
        if (auto bytes = reader.read(name))
            return bytes;
    return std::nullopt;
}

} // namespace tallowbay::x11
