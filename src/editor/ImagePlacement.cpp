#include "editor/ImagePlacement.h"

#include <algorithm>
#include <cmath>

namespace tallowbay {

ImagePlacement ImagePlacement::fit(Size canvas, PixelSize image, double inset)
{
    const Size size{static_cast<double>(image.width), static_cast<double>(image.height)};
    const double scale = std::min(
        (canvas.width - 2 * inset) / size.width, (canvas.height - 2 * inset) / size.height);
    return {
        scale,
        {canvas.width / 2 - size.width * scale / 2, canvas.height / 2 - size.height * scale / 2},
        size};
}

bool ImagePlacement::hasRoom(Size canvas, double inset)
{
    return fit(canvas, {1, 1}, inset).isUsable();
}

bool ImagePlacement::isUsable() const
{
    return std::isfinite(scale) && scale > 0;
}

Rect ImagePlacement::imageRect() const
{
    return {origin, {imageSize.width * scale, imageSize.height * scale}};
}

Point ImagePlacement::toImage(Point point) const
{
    return {(point.x - origin.x) / scale, (point.y - origin.y) / scale};
}

Point ImagePlacement::toCanvas(Point point) const
{
    return {point.x * scale + origin.x, point.y * scale + origin.y};
}

Rect ImagePlacement::toImage(const Rect& rect) const
{
    return {toImage(rect.origin), {rect.size.width / scale, rect.size.height / scale}};
}

Rect ImagePlacement::toCanvas(const Rect& rect) const
{
    return {toCanvas(rect.origin), {rect.size.width * scale, rect.size.height * scale}};
}

AnnotationItem ImagePlacement::toImage(AnnotationItem item) const
{
    item.rect = toImage(item.rect);
    return item;
}

std::optional<PlacementChange> PlacementChange::between(
    Size from, Size to, const Image& image, double inset)
{
    if (!image || from == to)
        return std::nullopt;
    const PlacementChange change(
        ImagePlacement::fit(from, image->size(), inset),
        ImagePlacement::fit(to, image->size(), inset));
    return change.from.isUsable() && change.to.isUsable() ? std::optional(change) : std::nullopt;
}

Point PlacementChange::carried(Point point) const
{
    return to.toCanvas(from.toImage(point));
}

Rect PlacementChange::carried(const Rect& rect) const
{
    return to.toCanvas(from.toImage(rect));
}

void PlacementChange::carry(std::vector<AnnotationItem>& items) const
{
    for (AnnotationItem& item : items)
        item.rect = carried(item.rect);
}

} // namespace tallowbay
