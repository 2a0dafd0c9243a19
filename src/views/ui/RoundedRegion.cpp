#include "views/ui/RoundedRegion.h"

#include <cmath>

namespace tallowbay::views {

namespace {

// How many pixels a corner takes from either end of a row.
int insetOfRow(int row, int height, double radius)
{
    const double middle = row + 0.5;
    const double above = radius - std::min(middle, height - middle); // the corner's centre
    if (above <= 0)
        return 0;
    const double edge = radius - std::sqrt(radius * radius - above * above);
    return static_cast<int>(std::ceil(edge - 0.5));
}

} // namespace

PixelRegion roundedRegion(PixelSize size, double radiusPixels)
{
    const double radius = std::min(radiusPixels, std::min(size.width, size.height) / 2.0);
    PixelRegion region;
    for (int row = 0; row < size.height; ++row) {
        const int inset = insetOfRow(row, size.height, radius);
        const PixelRect line{inset, row, size.width - 2 * inset, 1};
        if (!region.empty() && region.back().x == inset)
            ++region.back().height;
        else if (!line.empty())
            region.push_back(line);
    }
    return region;
}

} // namespace tallowbay::views
