#include "editor/HitTest.h"

#include "base/Fatal.h"
#include "editor/AnnotationConstants.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tallowbay {

namespace {

double distance(Point a, Point b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

// The lower and left edges belong to the rectangle, the upper and right ones do not.
bool contains(const Rect& rect, Point point)
{
    return point.x >= rect.minX() && point.x < rect.maxX() && point.y >= rect.minY()
        && point.y < rect.maxY();
}

double distanceToSegment(Point point, Point start, Point end)
{
    const Point along{end.x - start.x, end.y - start.y};
    const double squared = along.x * along.x + along.y * along.y;
    if (!(squared > 0))
        return distance(point, start);
    const double projected =
        ((point.x - start.x) * along.x + (point.y - start.y) * along.y) / squared;
    const double t = std::clamp(projected, 0.0, 1.0);
    return distance(point, {start.x + t * along.x, start.y + t * along.y});
}

bool hits(const AnnotationItem& item, Point point, const TextMeasurer& measurer)
{
    switch (item.tool) {
    case AnnotationTool::highlight:
    case AnnotationTool::blur:
        return contains(item.rect, point);
    case AnnotationTool::arrow:
        return distanceToSegment(point, item.start(), item.end()) < arrowHitTolerance;
    case AnnotationTool::text:
        break;
    }
    if (!item.hasVisibleText())
        return false;
    const Size size = measurer.measure(paddedAnnotationText(*item.text), annotationFont);
    return contains({item.rect.origin, size}, point);
}

using Grip = std::pair<Point, ResizeHandle>;

std::optional<ResizeHandle> firstNear(const auto& grips, Point point)
{
    for (const auto& [place, handle] : grips)
        if (distance(point, place) < handleHitTolerance)
            return handle;
    return std::nullopt;
}

std::optional<ResizeHandle> handleAt(const AnnotationItem& item, Point point)
{
    const Rect& rect = item.rect;
    switch (item.tool) {
    case AnnotationTool::arrow:
        return firstNear(
            std::array<Grip, 2>{
                {{item.start(), ResizeHandle::arrowStart}, {item.end(), ResizeHandle::arrowEnd}}},
            point);
    case AnnotationTool::highlight:
    case AnnotationTool::blur:
        return firstNear(
            std::array<Grip, 4>{
                {{{rect.minX(), rect.minY()}, ResizeHandle::rectBottomLeft},
                 {{rect.maxX(), rect.minY()}, ResizeHandle::rectBottomRight},
                 {{rect.minX(), rect.maxY()}, ResizeHandle::rectTopLeft},
                 {{rect.maxX(), rect.maxY()}, ResizeHandle::rectTopRight}}},
            point);
    case AnnotationTool::text:
        break;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::size_t> hitTestAnnotation(
    const std::vector<AnnotationItem>& items, Point point, const TextMeasurer& measurer)
{
    for (std::size_t index = items.size(); index-- > 0;)
        if (hits(items[index], point, measurer))
            return index;
    return std::nullopt;
}

std::optional<HandleHit> hitTestResizeHandle(const std::vector<AnnotationItem>& items, Point point)
{
    for (std::size_t index = items.size(); index-- > 0;)
        if (const auto handle = handleAt(items[index], point))
            return HandleHit{index, *handle};
    return std::nullopt;
}

Rect resizedRect(const Rect& old, ResizeHandle handle, Point to)
{
    const Point origin = old.origin;
    const Size size = old.size;
    switch (handle) {
    case ResizeHandle::arrowStart:
        return {to, {origin.x + size.width - to.x, origin.y + size.height - to.y}};
    case ResizeHandle::arrowEnd:
        return {origin, {to.x - origin.x, to.y - origin.y}};
    case ResizeHandle::rectTopLeft:
        return {{to.x, old.minY()}, {old.maxX() - to.x, to.y - old.minY()}};
    case ResizeHandle::rectTopRight:
        return {{old.minX(), old.minY()}, {to.x - old.minX(), to.y - old.minY()}};
    case ResizeHandle::rectBottomLeft:
        return {to, {old.maxX() - to.x, old.maxY() - to.y}};
    case ResizeHandle::rectBottomRight:
        return {{old.minX(), to.y}, {to.x - old.minX(), old.maxY() - to.y}};
    }
    fatalError("no such resize handle");
}

} // namespace tallowbay
