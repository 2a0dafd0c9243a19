#include "platform/tesseract/Components.h"

#include <algorithm>

namespace tallowbay::tesseract {

std::int32_t rootOf(std::vector<std::int32_t>& parents, std::int32_t pixel)
{
    auto at = static_cast<std::size_t>(pixel);
    while (parents[at] != static_cast<std::int32_t>(at)) {
        parents[at] = parents[static_cast<std::size_t>(parents[at])];
        at = static_cast<std::size_t>(parents[at]);
    }
    return static_cast<std::int32_t>(at);
}

// A parent never comes after its child, so that one pass in order labels them all.
Labels makeLabels(PixelSize size, std::vector<std::int32_t> parents)
{
    Labels result{size, std::move(parents), {}};
    std::size_t pixel = 0;
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x, ++pixel) {
            const auto parent = static_cast<std::size_t>(result.labels[pixel]);
            if (parent == pixel) {
                result.labels[pixel] = static_cast<std::int32_t>(result.components.size());
                result.components.push_back({x, y, x, y, 0});
            } else {
                result.labels[pixel] = result.labels[parent];
            }
            Component& component =
                result.components[static_cast<std::size_t>(result.labels[pixel])];
            component.left = std::min(component.left, x);
            component.right = std::max(component.right, x + 1);
            component.bottom = y + 1;
            ++component.area;
        }
    }
    return result;
}

std::vector<Component> componentsOf(const Plane& plane, std::uint8_t least)
{
    const auto isIn = [&](int x, int y) { return plane.row(y)[x] >= least; };
    const Labels labels = labelComponents(
        plane.size, [&](int x1, int y1, int x2, int y2) { return isIn(x1, y1) == isIn(x2, y2); });
    return componentsWhere(labels, isIn);
}

} // namespace tallowbay::tesseract
