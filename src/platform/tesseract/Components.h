#pragma once

#include "platform/tesseract/Plane.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <vector>

namespace tallowbay::tesseract {

// A connected set of pixels: its bounds, the last row and column exclusive, and how many they are.
struct Component {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    std::int64_t area = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
};

// A picture divided into connected sets: every pixel bears the index of its component.
struct Labels {
    PixelSize size;
    std::vector<std::int32_t> labels;
    std::vector<Component> components;

    std::int32_t at(int x, int y) const
    {
        return labels
            [static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width)
             + static_cast<std::size_t>(x)];
    }
};

// Turns parents, as left by joins, into labels from zero, and measures the components.
Labels makeLabels(PixelSize, std::vector<std::int32_t> parents);

std::int32_t rootOf(std::vector<std::int32_t>& parents, std::int32_t pixel);

// Joins every two neighbours, beside or above each other, for which joined(x1, y1, x2, y2) holds.
template <typename Joined> Labels labelComponents(PixelSize size, Joined joined)
{
    std::vector<std::int32_t> parents(
        static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
    std::iota(parents.begin(), parents.end(), 0);
    const auto join = [&](std::int32_t one, std::int32_t other) {
        one = rootOf(parents, one);
        other = rootOf(parents, other);
        parents[static_cast<std::size_t>(std::max(one, other))] = std::min(one, other);
    };
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const std::int32_t here = y * size.width + x;
            if (x > 0 && joined(x - 1, y, x, y))
                join(here, here - 1);
            if (y > 0 && joined(x, y - 1, x, y))
                join(here, here - size.width);
        }
    }
    return makeLabels(size, std::move(parents));
}

// The components whose pixels the test, given their places, holds for. All pixels of one component
// must be of one kind.
template <typename Test> std::vector<Component> componentsWhere(const Labels& labels, Test holds)
{
    std::vector<Component> found;
    std::vector<bool> seen(labels.components.size());
    for (int y = 0; y < labels.size.height; ++y) {
        for (int x = 0; x < labels.size.width; ++x) {
            const auto label = static_cast<std::size_t>(labels.at(x, y));
            if (seen[label] || !holds(x, y))
                continue;
            seen[label] = true;
            found.push_back(labels.components[label]);
        }
    }
    return found;
}

// The connected sets of pixels of at least that value.
std::vector<Component> componentsOf(const Plane&, std::uint8_t least);

} // namespace tallowbay::tesseract
