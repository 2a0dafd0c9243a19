#pragma once

#include "editor/CanvasState.h"
#include "platform/Graphics.h"

namespace tallowbay {

// What a shape that is being dragged out will become.
struct LivePreview {
    AnnotationTool tool = AnnotationTool::highlight;
    Color color;
};

// Paints all of the canvas: the image, the items with their outlines and handles, and the shape
// that is being dragged out, if its look is known. Changes nothing.
void drawCanvas(GraphicsContext&, const CanvasState&, const std::optional<LivePreview>&);

} // namespace tallowbay
