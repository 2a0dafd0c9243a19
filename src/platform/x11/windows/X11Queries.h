#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace tallowbay::x11 {

// What tells the windows of a connection from those of all others: of their numbers, the bits
// outside the mask are the base.
struct ResourceNumbers {
    std::uint32_t base = 0;
    std::uint32_t mask = 0;
};
ResourceNumbers resourceNumbersOf(xcb_connection_t&);

// Such as "_NET_SYSTEM_TRAY_S" with the number of the screen that the environment names.
std::string withScreenNumber(const std::string& prefix);

// Questions to the X server over a connection that somebody else reads the events of. A question of
// a window that is gone, or to a server that is gone, has an empty answer.
//
// Thread: any. Each question costs one or two round trips.
class X11Queries {
public:
    explicit X11Queries(xcb_connection_t& server)
        : server(&server)
    {
    }

    // The first screen's root window, which holds what the window manager says of itself.
    xcb_window_t root() const;

    // The window that owns a selection such as "_NET_WM_CM_S0"; 0 if nobody does.
    xcb_window_t selectionOwner(const std::string& selection) const;

    // The 32-bit values of a window's property; empty if it has none.
    std::vector<std::uint32_t> values(xcb_window_t, const std::string& property) const;

    // The bytes of a window's property, at most 64 kB; empty if it has none.
    std::string bytes(xcb_window_t, const std::string& property) const;

    // Whether a window has a property, of whatever type.
    bool has(xcb_window_t, const std::string& property) const;

    // Cardinals. Like the removal, sent when the connection is next flushed.
    void set(
        xcb_window_t, const std::string& property, const std::vector<std::uint32_t>& values) const;
    void remove(xcb_window_t, const std::string& property) const;

    // Adds names to a window's list of atoms, those that are not in it. Sent as the others.
    void addAtoms(
        xcb_window_t, const std::string& property, const std::vector<std::string>& names) const;

    // Sends the root window, whose manager listens there, a message about a window.
    void tellManager(
        xcb_window_t about, const std::string& message, std::uint32_t first,
        std::uint32_t second) const;

    // The innermost window at a place of the desktop; the root if there is no other.
    xcb_window_t windowAt(int x, int y) const;

    // The window that the server sends keys to; 0 if there is none, or it is no certain one.
    xcb_window_t focusedWindow() const;

    int widthOf(xcb_window_t) const;

    // Whether it is a window of this connection.
    bool isOwn(xcb_window_t) const;

private:
    xcb_connection_t* server;
};

} // namespace tallowbay::x11
