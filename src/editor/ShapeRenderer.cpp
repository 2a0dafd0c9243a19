#include "editor/ShapeRenderer.h"

#include "base/Fatal.h"
#include "editor/AnnotationConstants.h"

#include <algorithm>
#include <cmath>

namespace tallowbay {

namespace {

constexpr double highlightAlpha = 0.35;
constexpr Color blurBase = Color::white(0.12);
constexpr Color blurCells = Color::white(0.18);

// Less of a pixel than this is the rounding of the mapping from the canvas, not a part of the mask.
constexpr double touchTolerance = 1e-6;

// The whole pixels that the rectangle touches.
Rect touchedPixels(const Rect& rect)
{
    if (rect.size.width <= 0 || rect.size.height <= 0)
        return rect;
    const double left = std::floor(rect.minX() + touchTolerance);
    const double bottom = std::floor(rect.minY() + touchTolerance);
    const double right = std::ceil(rect.maxX() - touchTolerance);
    const double top = std::ceil(rect.maxY() - touchTolerance);
    return {{left, bottom}, {std::max(right - left, 0.0), std::max(top - bottom, 0.0)}};
}

double cellCount(double length, double cell)
{
    const double count = std::ceil(length / cell);
    if (!std::isfinite(count))
        fatalError("a blur mask without a finite number of cells");
    return count;
}

Point headCorner(Point tip, double angle, double side)
{
    return {tip.x - side * std::cos(angle), tip.y - side * std::sin(angle)};
}

void drawText(GraphicsContext& context, const AnnotationItem& item, const ShapeStyle& style)
{
    if (!item.hasVisibleText())
        return;
    context.drawText(
        paddedAnnotationText(*item.text), item.rect.origin,
        {{style.fontSize, annotationFont.weight}, item.color, annotationTextBackground});
}

} // namespace

ShapeStyle ShapeStyle::forCanvas()
{
    return {
        .arrowLineWidth = 2.5,
        .arrowHeadSide = 14,
        .fontSize = annotationFont.sizePoints,
        .blurCellDivisor = 8,
        .blurCellMinimum = 6,
        .blurHidesTouchedPixels = false};
}

ShapeStyle ShapeStyle::forExport(double scale)
{
    return {
        .arrowLineWidth = 6 / scale,
        .arrowHeadSide = 30 / scale,
        .fontSize = annotationFont.sizePoints / scale,
        .blurCellDivisor = 10,
        .blurCellMinimum = 8,
        .blurHidesTouchedPixels = true};
}

void drawArrow(
    GraphicsContext& context, Point start, Point end, Color color, const ShapeStyle& style)
{
    context.stroke(Polyline{{start, end}, false}, color, {style.arrowLineWidth, LineCap::round});
    const double angle = std::atan2(end.y - start.y, end.x - start.x);
    const double side = style.arrowHeadSide;
    context.fill(
        Polyline{
            {end, headCorner(end, angle - arrowHeadHalfAngle, side),
             headCorner(end, angle + arrowHeadHalfAngle, side)},
            true},
        color);
}

void drawBlurMask(GraphicsContext& context, const Rect& spanned, const ShapeStyle& style)
{
    const Rect rect = spanned.normalized();
    const double shorter = std::min(rect.size.width, rect.size.height);
    const double cell = std::max(shorter / style.blurCellDivisor, style.blurCellMinimum);
    const double columns = cellCount(rect.size.width, cell);
    const double rows = cellCount(rect.size.height, cell);
    context.fill(style.blurHidesTouchedPixels ? touchedPixels(rect) : rect, blurBase);
    for (double row = 0; row < rows; ++row) {
        for (double column = std::fmod(row, 2); column < columns; column += 2) {
            const Point origin{rect.minX() + column * cell, rect.minY() + row * cell};
            const Size size{
                std::min(rect.maxX() - origin.x, cell), std::min(rect.maxY() - origin.y, cell)};
            context.fill(Rect{origin, size}, blurCells);
        }
    }
}

void drawItem(GraphicsContext& context, const AnnotationItem& item, const ShapeStyle& style)
{
    switch (item.tool) {
    case AnnotationTool::highlight:
        context.fill(item.rect.normalized(), item.color.withAlpha(highlightAlpha));
        break;
    case AnnotationTool::arrow:
        drawArrow(context, item.start(), item.end(), item.color, style);
        break;
    case AnnotationTool::text:
        drawText(context, item, style);
        break;
    case AnnotationTool::blur:
        drawBlurMask(context, item.rect, style);
        break;
    }
}

} // namespace tallowbay
