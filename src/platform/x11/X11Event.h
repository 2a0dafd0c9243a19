#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace tallowbay::x11 {

// What xcb hands out is freed by its last owner.
struct XcbFree {
    void operator()(void* memory) const { std::free(memory); }
};

// A reply of the server; null if the request failed or the connection is lost.
template <typename T> using XcbReply = std::unique_ptr<T, XcbFree>;

template <typename T> XcbReply<T> owned(T* reply)
{
    return XcbReply<T>(reply);
}

// Request numbers wrap around.
inline bool isBefore(std::uint32_t one, std::uint32_t other)
{
    return static_cast<std::int32_t>(one - other) < 0;
}

// An event of the server, shared by those who look at it.
class X11Event {
public:
    explicit X11Event(xcb_generic_event_t* event)
        : event(event, XcbFree())
    {
    }

    // 0 for an error. The mark of an event that a client sent is left out.
    std::uint8_t type() const { return event->response_type & 0x7f; }

    // The number of our last request that the server had handled when it made the event: whatever
    // an event with a smaller number than a request tells of came before that request.
    std::uint32_t sequence() const { return event->full_sequence; }

    template <typename T> const T& as() const { return reinterpret_cast<const T&>(*event); }

private:
    std::shared_ptr<const xcb_generic_event_t> event;
};

} // namespace tallowbay::x11
