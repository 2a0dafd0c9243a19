#pragma once

#include "base/Bitmap.h"
#include "editor/AnnotationItem.h"

namespace tallowbay {

// Where a picture lies in the canvas: scaled to fit, up or down, and centred.
struct ImagePlacement {
    double scale = 1; // points of the canvas per pixel of the picture
    Point origin; // the picture's lower left corner in the canvas
    Size imageSize; // pixels

    // A canvas without room inside of the inset gives a scale that is not positive.
    static ImagePlacement fit(Size canvas, PixelSize image, double inset);

    bool isUsable() const;
    Rect imageRect() const;

    // Both count y upwards from the lower left corner, of the canvas and of the picture.
    Point toImage(Point canvasPoint) const;
    Point toCanvas(Point imagePoint) const;

    // Keeps the signs of the size.
    Rect toImage(const Rect& canvasRect) const;
    AnnotationItem toImage(AnnotationItem) const;
};

} // namespace tallowbay
