#pragma once

#include "base/Bitmap.h"
#include "editor/AnnotationItem.h"

#include <optional>
#include <vector>

namespace tallowbay {

// Where a picture lies in the canvas: scaled to fit, up or down, and centred.
struct ImagePlacement {
    double scale = 1; // points of the canvas per pixel of the picture
    Point origin; // the picture's lower left corner in the canvas
    Size imageSize; // pixels

    // A canvas without room inside of the inset gives a scale that is not positive.
    static ImagePlacement fit(Size canvas, PixelSize image, double inset);
    static bool hasRoom(Size canvas, double inset);

    bool isUsable() const;
    Rect imageRect() const;

    // Both count y upwards from the lower left corner, of the canvas and of the picture.
    Point toImage(Point canvasPoint) const;
    Point toCanvas(Point imagePoint) const;

    // Both keep the signs of the size.
    Rect toImage(const Rect& canvasRect) const;
    Rect toCanvas(const Rect& imageRect) const;
    AnnotationItem toImage(AnnotationItem) const;
};

// Carries what lies over a picture from a canvas of one size to one of another, where it lies over
// the same pixels.
class PlacementChange {
public:
    // Empty where there is nothing to carry: without a picture or room for it, or for one size.
    static std::optional<PlacementChange> between(Size from, Size to, const Image&, double inset);

    Point carried(Point) const;
    Rect carried(const Rect&) const;
    void carry(std::vector<AnnotationItem>&) const;

private:
    PlacementChange(const ImagePlacement& from, const ImagePlacement& to)
        : from(from)
        , to(to)
    {
    }

    ImagePlacement from;
    ImagePlacement to;
};

} // namespace tallowbay
