#pragma once

#include <xcb/xcb.h>

namespace tallowbay::x11 {

// Whether the display is the X side of a Wayland session, as the environment says or the server
// itself. Such a server grants everything an X server does, and does it for X programs alone: the
// screen that it shows is black where others draw. A user who decides for X11 is believed against
// the environment, but not against the server.
//
// Of a connection that has failed, or of none, the environment alone is asked. Thread: any; some
// round trips.
bool isWaylandSession(xcb_connection_t*);

} // namespace tallowbay::x11
