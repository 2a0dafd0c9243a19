#pragma once

#include "base/Geometry.h"
#include "editor/AnnotationTool.h"

#include <optional>
#include <string>

namespace tallowbay {

// One shape on a screenshot, in points of the canvas on which it was made.
//
// What the rectangle means depends on the tool:
// - highlight, blur: the area. Normalised when it is made; a corner that was dragged past the
//   opposite one leaves a negative size, which stays and is read through the rectangle's edges.
// - arrow: the origin is the tail, origin + size the tip. The size is a signed vector.
// - text: the origin is the text's lower left corner, the size is zero: how large the text comes
//   out is measured when it is drawn.
//
// The tool and the text stay as they were made; the rectangle and the colour may change. The colour
// of a blur is kept but never drawn.
struct AnnotationItem {
    AnnotationTool tool = AnnotationTool::highlight;
    Rect rect;
    std::optional<std::string> text;
    Color color;
    bool operator==(const AnnotationItem&) const = default;

    Point start() const { return rect.origin; }
    Point end() const
    {
        return {rect.origin.x + rect.size.width, rect.origin.y + rect.size.height};
    }

    // A text item without text is nowhere: not drawn, not hit, not exported.
    bool hasVisibleText() const { return text && !text->empty(); }
};

} // namespace tallowbay
