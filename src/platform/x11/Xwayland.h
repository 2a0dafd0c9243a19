#pragma once

#include <xcb/xcb.h>

namespace tallowbay::x11 {

// Whether the server is the one of a Wayland session. It grants everything an X server does, and
// does it for X programs alone: the screen that it shows is black where others draw.
//
// Thread: any; some round trips.
bool isXwayland(xcb_connection_t*, xcb_window_t root);

} // namespace tallowbay::x11
