#pragma once

#include <QRect>

#include <cstdint>
#include <string>
#include <vector>

namespace tallowbay::qt {

// Questions to the X server over Qt's own connection, and hints that Qt has no words for. Without
// a connection every answer is empty, and no hint is given.
//
// Thread: main queue. Each costs one or two round trips.

// The window that owns a selection such as "_NET_WM_CM_S0"; 0 if nobody does.
std::uint32_t selectionOwner(const std::string& selection);

// Such as "_NET_SYSTEM_TRAY_S" with the number of the screen that Qt uses.
std::string withScreenNumber(const std::string& prefix);

// The 32-bit values of a window's property; empty if it has none.
std::vector<std::uint32_t> windowProperty(std::uint32_t window, const std::string& name);

// The bytes of a window's property, at most 64 kB; empty if it has none.
std::string windowBytes(std::uint32_t window, const std::string& name);

// Whether a window has a property, of whatever type.
bool hasProperty(std::uint32_t window, const std::string& name);

// Cardinals. Sent when Qt next flushes its requests.
void setWindowProperty(
    std::uint32_t window, const std::string& name, const std::vector<std::uint32_t>& values);

// The root window, which holds what the window manager says of itself; 0 without a server.
std::uint32_t rootWindow();

// What tells the windows of Qt's connection from those of all others: of their numbers, the bits
// outside the mask are the base. Zeros without a server.
struct ResourceNumbers {
    std::uint32_t base = 0;
    std::uint32_t mask = 0;
};
ResourceNumbers ownResourceNumbers();

// Whether what is seen in the middle of this place is a window of ours of about that size: the icon
// in a panel, if that is where it is and nothing lies over it.
bool isSeen(const QRect& icon);

// Whether windows can let shine through what lies below them.
bool hasCompositingManager();

} // namespace tallowbay::qt
