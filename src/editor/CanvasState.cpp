#include "editor/CanvasState.h"

#include "base/Fatal.h"

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

void CanvasState::replaceAnnotations(std::vector<AnnotationItem> items)
{
    annotations = std::move(items);
    movingIndex.reset();
    moveLastPoint.reset();
    resizingIndex.reset();
    resizeHandle.reset();
    hoveredIndex.reset();
    selectedAnnotationIndex.reset();
}

AnnotationItem CanvasState::removeAnnotation(std::size_t index)
{
    AnnotationItem removed = checkedAt(annotations, index);
    annotations.erase(annotations.begin() + static_cast<std::ptrdiff_t>(index));
    for (auto* stored : {&movingIndex, &resizingIndex, &hoveredIndex, &selectedAnnotationIndex})
        follow(*stored, index);
    if (!movingIndex)
        moveLastPoint.reset();
    if (!resizingIndex)
        resizeHandle.reset();
    return removed;
}

} // namespace tallowbay
