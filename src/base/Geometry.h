#pragma once

#include <algorithm>
#include <cmath>

namespace tallowbay {

// Points and sizes are in logical points; y grows upwards everywhere in the logic.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

// A width or height may be negative; the edges are those of the area that is spanned.
struct Rect {
    Point origin;
    Size size;

    double minX() const { return std::min(origin.x, origin.x + size.width); }
    double maxX() const { return std::max(origin.x, origin.x + size.width); }
    double minY() const { return std::min(origin.y, origin.y + size.height); }
    double maxY() const { return std::max(origin.y, origin.y + size.height); }
    double midX() const { return origin.x + size.width / 2; }
    double midY() const { return origin.y + size.height / 2; }
    Rect normalized() const
    {
        return {{minX(), minY()}, {std::abs(size.width), std::abs(size.height)}};
    }
    bool operator==(const Rect&) const = default;
};

// Calibrated RGB with straight (not premultiplied) alpha, each component 0 to 1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    static constexpr Color white(double level, double alpha = 1)
    {
        return {level, level, level, alpha};
    }
    constexpr Color withAlpha(double replaced) const { return {red, green, blue, replaced}; }
    bool operator==(const Color&) const = default;
};

enum class FontWeight { regular, medium, semibold, bold };

// The system's user-interface font.
struct Font {
    double sizePoints = 13;
    FontWeight weight = FontWeight::regular;
    bool operator==(const Font&) const = default;
};

} // namespace tallowbay
