#pragma once

#include "editor/AnnotationItem.h"
#include "platform/Graphics.h"

namespace tallowbay {

// The measures in which the canvas and the written file differ; all else about the shapes is the
// same for both.
struct ShapeStyle {
    double arrowLineWidth;
    double arrowHeadSide;
    double fontSize;
    double blurCellDivisor; // of the shorter side
    double blurCellMinimum;

    // Whether a pixel that the mask covers in part is hidden as a whole. Points are pixels then.
    bool blurHidesTouchedPixels;

    static ShapeStyle forCanvas();

    // In pixels of a picture that the canvas shows at this scale. The arrow is deliberately heavier
    // than on the canvas.
    static ShapeStyle forExport(double scale);
};

// Items without visible text draw nothing. The surface and the item share one coordinate system.
void drawItem(GraphicsContext&, const AnnotationItem&, const ShapeStyle&);

void drawArrow(GraphicsContext&, Point start, Point end, Color, const ShapeStyle&);

// An opaque checkerboard that hides what is below it; no blur is computed. A size without a finite
// number of cells stops the process.
void drawBlurMask(GraphicsContext&, const Rect&, const ShapeStyle&);

} // namespace tallowbay
