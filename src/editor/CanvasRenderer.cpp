#include "editor/CanvasRenderer.h"

#include "editor/AnnotationConstants.h"
#include "editor/ImagePlacement.h"
#include "editor/ShapeRenderer.h"

namespace tallowbay {

namespace {

constexpr double backdropRadius = 8;
constexpr Color backdropColor = Color::white(0.05, 0.85);
constexpr Color selectionColor{0.3, 0.6, 1.0, 0.8};
constexpr double selectionGrowth = 2;
constexpr StrokeStyle outlineStyle{1.5};
constexpr StrokeStyle liveBlurStyle{1};

// The text outline is the same for every text, however long.
constexpr Point textOutlineOffset{-2, -4};
constexpr Size textOutlineSize{100, 24};

void drawBackground(GraphicsContext& context, const CanvasState& state)
{
    if (!state.backgroundImage)
        return;
    const auto placement =
        ImagePlacement::fit(state.size, state.backgroundImage->size(), imageInset);
    if (!placement.isUsable())
        return;
    context.fill(RoundedRect{placement.imageRect(), backdropRadius}, backdropColor);
    context.drawImage(state.backgroundImage, placement.imageRect());
}

void drawHandle(GraphicsContext& context, Point center, Color color)
{
    const Oval circle{
        {{center.x - handleRadius, center.y - handleRadius}, {2 * handleRadius, 2 * handleRadius}}};
    context.fill(circle, Color::white(1));
    context.stroke(circle, color, outlineStyle);
}

void drawRectangleDecorations(GraphicsContext& context, const CanvasState& state, std::size_t index)
{
    const Rect rect = state.annotations[index].rect.normalized();
    if (state.isSelected(index)) {
        const Rect grown{
            {rect.minX() - selectionGrowth, rect.minY() - selectionGrowth},
            {rect.size.width + 2 * selectionGrowth, rect.size.height + 2 * selectionGrowth}};
        context.stroke(grown, selectionColor, outlineStyle);
    }
    if (!state.isActive(index))
        return;
    drawHandle(context, {rect.minX(), rect.minY()}, systemBlue);
    drawHandle(context, {rect.maxX(), rect.minY()}, systemBlue);
    drawHandle(context, {rect.minX(), rect.maxY()}, systemBlue);
    drawHandle(context, {rect.maxX(), rect.maxY()}, systemBlue);
}

void drawTextDecorations(GraphicsContext& context, const CanvasState& state, std::size_t index)
{
    const AnnotationItem& item = state.annotations[index];
    if (!item.hasVisibleText() || !state.isSelected(index))
        return;
    const Point corner{
        item.rect.origin.x + textOutlineOffset.x, item.rect.origin.y + textOutlineOffset.y};
    context.stroke(Rect{corner, textOutlineSize}, selectionColor, outlineStyle);
}

void drawDecorations(GraphicsContext& context, const CanvasState& state, std::size_t index)
{
    const AnnotationItem& item = state.annotations[index];
    switch (item.tool) {
    case AnnotationTool::highlight:
    case AnnotationTool::blur:
        drawRectangleDecorations(context, state, index);
        break;
    case AnnotationTool::arrow:
        if (state.isActive(index)) {
            drawHandle(context, item.start(), systemRed);
            drawHandle(context, item.end(), systemRed);
        }
        break;
    case AnnotationTool::text:
        drawTextDecorations(context, state, index);
        break;
    }
}

void drawLiveShape(GraphicsContext& context, const CanvasState& state, const LivePreview& preview)
{
    const Rect live = *state.liveRect;
    if (live.size == Size{})
        return; // the mouse has not moved
    const Point end{live.origin.x + live.size.width, live.origin.y + live.size.height};
    switch (preview.tool) {
    case AnnotationTool::highlight:
        context.fill(live.normalized(), preview.color.withAlpha(0.25));
        context.stroke(live.normalized(), preview.color.withAlpha(0.8), outlineStyle);
        break;
    case AnnotationTool::arrow:
        if (state.dragStart)
            drawArrow(context, *state.dragStart, end, preview.color, ShapeStyle::forCanvas());
        break;
    case AnnotationTool::text:
        break;
    case AnnotationTool::blur:
        drawBlurMask(context, live, ShapeStyle::forCanvas());
        context.stroke(live.normalized(), systemRed.withAlpha(0.4), liveBlurStyle);
        break;
    }
}

} // namespace

void drawCanvas(
    GraphicsContext& context, const CanvasState& state, const std::optional<LivePreview>& preview)
{
    drawBackground(context, state);
    for (std::size_t index = 0; index < state.annotations.size(); ++index) {
        drawItem(context, state.annotations[index], ShapeStyle::forCanvas());
        drawDecorations(context, state, index);
    }
    if (state.liveRect && preview)
        drawLiveShape(context, state, *preview);
}

} // namespace tallowbay
