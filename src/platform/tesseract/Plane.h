#pragma once

#include "base/Bitmap.h"

#include <cstdint>
#include <vector>

namespace tallowbay::tesseract {

// Rows or columns, the last one exclusive.
struct Span {
    int begin = 0;
    int end = 0;

    int length() const { return end - begin; }
};

// A picture of one byte a pixel, rows from the top, without padding.
struct Plane {
    explicit Plane(PixelSize size, std::uint8_t value = 0)
        : size(size)
        , values(
              static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), value)
    {
    }

    std::uint8_t* row(int y) { return values.data() + offset(y); }
    const std::uint8_t* row(int y) const { return values.data() + offset(y); }

    PixelSize size;
    std::vector<std::uint8_t> values;

private:
    std::size_t offset(int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width);
    }
};

} // namespace tallowbay::tesseract
