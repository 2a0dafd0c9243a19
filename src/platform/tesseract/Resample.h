#pragma once

#include "platform/tesseract/Plane.h"

namespace tallowbay::tesseract {

// The plane in another size, smooth both when it grows and when it shrinks.
Plane resampled(const Plane&, PixelSize);

} // namespace tallowbay::tesseract
