#pragma once

#include "base/Bitmap.h"
#include "editor/AnnotationItem.h"

#include <functional>
#include <vector>

namespace tallowbay::test {

// A picture computed from the definition of its shapes alone: every pixel is sampled on a fine
// grid, and the share of the samples that lie inside of a shape is the shape's share of the pixel.
// Coordinates are units with y upwards; a unit is pixelsPerUnit pixels.
class ReferencePicture {
public:
    using Inside = std::function<bool(Point)>;

    ReferencePicture(PixelSize, double pixelsPerUnit, Color background);

    // Lays the colour over what is there. Nothing of the shape lies outside of the bounds.
    void lay(const Rect& bounds, const Inside&, Color);

    void fillRect(Rect, Color);
    void strokeRect(Rect, double width, Color);
    void fillCircle(Point center, double radius, Color);
    void strokeCircle(Point center, double radius, double width, Color);
    void arrow(Point start, Point end, double width, double side, Color);
    void checkerboard(Rect, double cell, Color base, Color cells);

    // The largest difference of any channel at any pixel, 0 to 255.
    int largestDifference(const Bitmap&) const;
    double meanDifference(const Bitmap&) const;

private:
    void compare(const Bitmap&, const std::function<void(int)>& each) const;

    PixelSize size;
    double pixelsPerUnit;
    std::vector<Color> pixels; // first row on top
};

} // namespace tallowbay::test
