#pragma once

#include "platform/linux/ocr/Plane.h"

namespace tallowbay::linux_desktop {

// The plane in another size, smooth both when it grows and when it shrinks.
Plane resampled(const Plane&, PixelSize);

} // namespace tallowbay::linux_desktop
