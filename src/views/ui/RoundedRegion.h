#pragma once

#include "base/Bitmap.h"
#include "base/PixelRect.h"

namespace tallowbay::views {

// The pixels of a rectangle with round corners, from the upper left corner on: those whose middle
// lies within. No pixel is named twice. A radius is at most half of the shorter side.
PixelRegion roundedRegion(PixelSize, double radiusPixels);

} // namespace tallowbay::views
