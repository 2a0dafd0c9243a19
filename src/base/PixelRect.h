#pragma once

#include <vector>

namespace tallowbay {

// Device pixels, as the display server counts them: the origin is the upper left corner, y grows
// downwards.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool empty() const { return width <= 0 || height <= 0; }
    bool operator==(const PixelRect&) const = default;
};

// The area that the rectangles cover together.
using PixelRegion = std::vector<PixelRect>;

} // namespace tallowbay
