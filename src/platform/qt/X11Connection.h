#pragma once

struct xcb_connection_t;

namespace tallowbay::qt {

// The connection that Qt itself has to the X server; it lasts as long as the application object.
// Null where Qt does not run on X11.
xcb_connection_t* x11Connection();

} // namespace tallowbay::qt
