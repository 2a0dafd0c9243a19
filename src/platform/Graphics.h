#pragma once

#include "base/Bitmap.h"
#include "base/Geometry.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tallowbay {

// Where a platform has such colours of its own, these still hold: a picture that is written to a
// file must not depend on the machine.
inline constexpr Color systemYellow{1, 0.8, 0};
inline constexpr Color systemBlue{0, 0.478, 1};
inline constexpr Color systemRed{1, 0.231, 0.188};

// How what is drawn meets what is there: laid over it by its alpha, or put in its place.
enum class CompositingOperation { sourceOver, copy };

enum class LineCap { butt, round };

struct RoundedRect {
    Rect rect;
    double radius = 0;
    bool operator==(const RoundedRect&) const = default;
};

// The ellipse that touches the four sides.
struct Oval {
    Rect rect;
    bool operator==(const Oval&) const = default;
};

struct Polyline {
    std::vector<Point> points;
    bool closed = false;
    bool operator==(const Polyline&) const = default;
};

// A rectangle of negative size is the area it spans.
using Shape = std::variant<Rect, RoundedRect, Oval, Polyline>;

struct StrokeStyle {
    double width = 1;
    LineCap cap = LineCap::butt;
    bool operator==(const StrokeStyle&) const = default;
};

struct TextStyle {
    Font font;
    Color foreground;
    std::optional<Color> background;
    bool operator==(const TextStyle&) const = default;
};

// A surface to draw on. Coordinates are those of the surface's user: the origin is the lower left
// corner, y grows upwards. Edges are smoothed (a pixel that is covered in part takes part of the
// colour), and what lies outside of the surface is cut off. Nothing fails: a shape without area
// fills nothing.
//
// Thread: the one that was given the context, and only until the call that handed it out returns.
class GraphicsContext {
public:
    virtual ~GraphicsContext() = default;

    // Holds for every call below until it is set again; sourceOver in a new context.
    virtual void setCompositingOperation(CompositingOperation) = 0;
    virtual CompositingOperation compositingOperation() const = 0;

    // A rectangle on whole pixels is filled exactly: what an opaque colour covers is gone.
    virtual void fill(const Shape&, Color) = 0;

    // The line's middle runs along the shape's edge. A rectangle without any size has none.
    virtual void stroke(const Shape&, Color, const StrokeStyle&) = 0;

    // Scales the picture into the rectangle, with smoothing, whatever its own proportions. Pixels
    // of the surface that the rectangle touches may be covered as a whole, so that what lies below
    // shows at no edge. A null image draws nothing.
    virtual void drawImage(const Image&, const Rect&) = 0;

    // The text stands in a box of exactly the size that TextMeasurer states, whose lower left
    // corner is the origin; the background fills that box. UTF-8; a line feed starts a new line
    // below the last. The outlines grow with the font's size as the box does, without hinting.
    virtual void drawText(const std::string& text, const Point& origin, const TextStyle&) = 0;
};

} // namespace tallowbay
