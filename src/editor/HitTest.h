#pragma once

#include "editor/CanvasState.h"
#include "platform/TextMeasurer.h"

namespace tallowbay {

struct HandleHit {
    std::size_t index = 0;
    ResizeHandle handle = ResizeHandle::arrowStart;
    bool operator==(const HandleHit&) const = default;
};

// The topmost item under the point.
std::optional<std::size_t> hitTestAnnotation(
    const std::vector<AnnotationItem>&, Point, const TextMeasurer&);

// The topmost item with a handle near the point, whether or not its handles are drawn.
std::optional<HandleHit> hitTestResizeHandle(const std::vector<AnnotationItem>&, Point);

// The rectangle after the handle was dragged to the point. It is neither limited nor normalised:
// past the opposite edge its size turns negative.
Rect resizedRect(const Rect&, ResizeHandle, Point);

} // namespace tallowbay
