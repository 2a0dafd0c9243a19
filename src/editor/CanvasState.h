#pragma once

#include "base/Bitmap.h"
#include "editor/AnnotationItem.h"
#include "editor/ImagePlacement.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace tallowbay {

// Where an item can be grabbed to give it another size.
enum class ResizeHandle {
    arrowStart,
    arrowEnd,
    rectTopLeft,
    rectTopRight,
    rectBottomLeft,
    rectBottomRight,
};

// All that the canvas shows and remembers. At most one gesture is under way: a resize
// (resizingIndex), a move (movingIndex) or a new shape (dragStart).
struct CanvasState {
    Size size; // of the canvas, in points

    // Of the canvas on which the points below count: this one's, unless it has no room for a
    // picture; then still the last one's that had.
    Size placedOn;

    Image backgroundImage; // null: nothing is shown and nothing can be done
    std::vector<AnnotationItem> annotations; // later ones lie on top

    std::optional<Rect> liveRect; // of the shape that is being dragged out
    std::optional<Point> dragStart;
    std::optional<std::size_t> movingIndex;
    std::optional<Point> moveLastPoint; // empty after a change of size
    std::optional<std::size_t> resizingIndex;
    std::optional<ResizeHandle> resizeHandle;
    std::optional<Rect> resizedFrom; // the item's rectangle when the resize began
    std::optional<std::size_t> hoveredIndex;
    std::optional<std::size_t> selectedAnnotationIndex;

    // Active items show their handles.
    bool isActive(std::size_t index) const
    {
        return hoveredIndex == index || resizingIndex == index || movingIndex == index;
    }
    bool isSelected(std::size_t index) const { return selectedAnnotationIndex == index; }

    // Ends the gesture that makes a new shape. True if there was one.
    bool endNewShape();
    void endResize();
    void endMove();
    void endGesture(); // whichever there is

    // Everything keeps its place over the picture, but for the mouse.
    void carry(const PlacementChange&);

    // Other items: no index and no gesture of the old ones survives.
    void replaceAnnotations(std::vector<AnnotationItem>);

    // Indices that lie behind the item follow it down; those of the item itself go, and its gesture
    // with them. An index outside of the list stops the process.
    void removeAnnotation(std::size_t index);
};

} // namespace tallowbay
