#pragma once

#include "base/Bitmap.h"
#include "base/PixelRect.h"

#include <optional>

#include <xcb/xcb.h>

namespace tallowbay::x11 {

// What is seen on the first screen there, in a fraction of the time that it takes through the
// connection. Empty if the rectangle does not lie on the screen, if the server is on another
// machine, or if its pixels are not 32-bit words of ours.
std::optional<Bitmap> pictureThroughSharedMemory(xcb_connection_t&, const PixelRect&);

} // namespace tallowbay::x11
