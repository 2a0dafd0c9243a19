#pragma once

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace tallowbay::test {

// Another program of the desktop, as raw as one can be: it asks for the clipboard, serves it,
// and gets keys, all at the pace that the test sets.
//
// Thread: one at a time. Throws std::runtime_error if the server is not there.
class XClient {
public:
    using Event = std::shared_ptr<xcb_generic_event_t>;

    struct Property {
        xcb_atom_t type = XCB_ATOM_NONE; // none if there is no such property
        std::string bytes;

        std::vector<std::uint32_t> values() const; // of a property of 32-bit values
    };

    explicit XClient(const std::string& display);

    xcb_connection_t* connection() const { return server.get(); }
    xcb_window_t window() const { return ownWindow; }
    xcb_window_t root() const { return rootWindow; }
    xcb_atom_t atom(std::string_view name);
    std::string atomName(xcb_atom_t);

    // Shows the window and gets it the keyboard, by way of the window manager if there is one.
    void takeFocus();

    // Whether a window manager has put a frame around the window.
    bool isFramed();

    // The next event, null if none comes within the limit.
    Event next(std::chrono::milliseconds limit);

    // The next event of a type; others are dropped. Null if none comes within the limit.
    Event nextOf(std::uint8_t type, std::chrono::milliseconds limit = std::chrono::seconds(20));

    // Asks the owner of a selection, and does not wait.
    void request(
        std::string_view target, std::string_view property = "PASTED",
        std::string_view selection = "CLIPBOARD", xcb_timestamp_t time = XCB_CURRENT_TIME);

    // Waits for the answer: whether the owner gave what was asked for.
    bool granted();

    // The property with its removal, or without.
    Property take(std::string_view property = "PASTED") { return read(property, true); }
    Property look(std::string_view property = "PASTED") { return read(property, false); }

    // Receives the pieces of a long answer, which has been granted. Empty if none comes in time.
    std::optional<std::string> takePieces(std::string_view property = "PASTED");

    // Asks and receives, in pieces if need be. Empty if it is refused.
    std::optional<std::string> paste(std::string_view target, std::string_view property = "PASTED");

    // The names of what the clipboard can be had as.
    std::vector<std::string> targets();

    void setProperty(
        xcb_window_t, std::string_view property, std::string_view type, const std::string& bytes);
    void setValues(
        xcb_window_t, std::string_view property, std::string_view type,
        const std::vector<std::uint32_t>& values);

    // Becomes the owner of a selection.
    void own(std::string_view selection);

    // Answers a request: what it asked for is in its property, or it is refused.
    void answer(const xcb_selection_request_event_t&, bool granted);

    // Returns when the server has done all that was asked of it.
    void sync();

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    bool isActive();
    void askManagerForFocus();
    Property read(std::string_view name, bool remove);

    std::unique_ptr<xcb_connection_t, Disconnect> server;
    xcb_window_t rootWindow = XCB_NONE;
    xcb_window_t ownWindow = XCB_NONE;
};

} // namespace tallowbay::test
