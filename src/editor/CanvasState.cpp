#include "editor/CanvasState.h"

#include "base/Fatal.h"

#include <utility>

namespace tallowbay {

namespace {

void follow(std::optional<std::size_t>& index, std::size_t removed)
{
    if (index == removed)
        index.reset();
    else if (index && *index > removed)
        --*index;
}

} // namespace

bool CanvasState::endNewShape()
{
    liveRect.reset();
    return std::exchange(dragStart, std::nullopt).has_value();
}

void CanvasState::endResize()
{
    resizingIndex.reset();
    resizeHandle.reset();
    resizedFrom.reset();
}

void CanvasState::endMove()
{
    movingIndex.reset();
    moveLastPoint.reset();
}

void CanvasState::endGesture()
{
    endNewShape();
    endResize();
    endMove();
}

void CanvasState::carry(const PlacementChange& change)
{
    change.carry(annotations);
    for (auto* rect : {&liveRect, &resizedFrom})
        if (*rect)
            *rect = change.carried(**rect);
    if (dragStart)
        dragStart = change.carried(*dragStart);
}

void CanvasState::replaceAnnotations(std::vector<AnnotationItem> items)
{
    annotations = std::move(items);
    endGesture();
    hoveredIndex.reset();
    selectedAnnotationIndex.reset();
}

void CanvasState::removeAnnotation(std::size_t index)
{
    checkedAt(annotations, index);
    annotations.erase(annotations.begin() + static_cast<std::ptrdiff_t>(index));
    for (auto* stored : {&movingIndex, &resizingIndex, &hoveredIndex, &selectedAnnotationIndex})
        follow(*stored, index);
    if (!movingIndex)
        endMove();
    if (!resizingIndex)
        endResize();
}

} // namespace tallowbay
