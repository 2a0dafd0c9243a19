#include "editor/AnnotationCanvas.h"

#include "base/AsciiText.h"
#include "base/Fatal.h"
#include "editor/AnnotationConstants.h"
#include "editor/CanvasRenderer.h"
#include "editor/ImagePlacement.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowbay {

namespace {

constexpr Size textFieldSize{200, 24};
constexpr double textFieldDrop = 10; // of the field's lower edge below the click

// Readable on the field's ground over every picture, whatever the colour of the text.
constexpr Color placeholderColor = Color::white(1, 0.85);

Rect spannedBy(Point a, Point b)
{
    return Rect{a, {b.x - a.x, b.y - a.y}}.normalized();
}

} // namespace

AnnotationCanvas::AnnotationCanvas(AnnotationCanvasHost& host, const TextMeasurer& measurer)
    : measurer(measurer)
    , view(host.makeCanvasView(*this))
{
    resetCursorRects();
}

AnnotationCanvas::~AnnotationCanvas() = default;

void AnnotationCanvas::setSize(Size size)
{
    if (std::exchange(canvas.size, size) != size)
        canvas.moveLastPoint.reset(); // where the mouse is now, its next event tells
    view->redraw();
    std::optional<PlacementChange> change;
    if (ImagePlacement::hasRoom(size, imageInset))
        change = PlacementChange::between(
            std::exchange(canvas.placedOn, size), size, canvas.backgroundImage, imageInset);
    if (change) {
        canvas.carry(*change);
        textAnchor = change->carried(textAnchor);
    }
    if (activeTextField)
        activeTextField->setFrame(textFieldFrame());
    if (change)
        reportChange();
}

void AnnotationCanvas::setBackgroundImage(Image image)
{
    canvas.backgroundImage = std::move(image);
    if (!canvas.backgroundImage)
        canvas.endGesture(); // its end will not be heard
    view->redraw();
}

void AnnotationCanvas::setAnnotations(std::vector<AnnotationItem> items, Size madeOn)
{
    if (!ImagePlacement::hasRoom(canvas.placedOn, imageInset))
        canvas.placedOn = madeOn;
    const auto change =
        PlacementChange::between(madeOn, canvas.placedOn, canvas.backgroundImage, imageInset);
    if (change)
        change->carry(items);
    canvas.replaceAnnotations(std::move(items));
    view->redraw();
    if (change)
        reportChange();
}

void AnnotationCanvas::appendAnnotation(AnnotationItem item)
{
    canvas.annotations.push_back(std::move(item));
    view->redraw();
}

void AnnotationCanvas::removeAnnotation(std::size_t index)
{
    canvas.removeAnnotation(index);
    view->redraw();
}

void AnnotationCanvas::clearSelection()
{
    canvas.selectedAnnotationIndex.reset();
    view->redraw();
}

void AnnotationCanvas::draw(GraphicsContext& context) const
{
    std::optional<LivePreview> preview;
    if (delegate)
        preview = {delegate->selectedTool(), delegate->highlightColor()};
    drawCanvas(context, canvas, preview);
}

std::optional<std::size_t> AnnotationCanvas::hitTestAnnotation(Point point) const
{
    return tallowbay::hitTestAnnotation(canvas.annotations, point, measurer);
}

std::optional<HandleHit> AnnotationCanvas::hitTestResizeHandle(Point point) const
{
    return tallowbay::hitTestResizeHandle(canvas.annotations, point);
}

void AnnotationCanvas::resizeAnnotation(std::size_t index, ResizeHandle handle, Point to)
{
    Rect& rect = checkedAt(canvas.annotations, index).rect;
    rect = resizedRect(canvas.resizedFrom.value_or(rect), handle, to);
    view->redraw();
    reportChange();
}

void AnnotationCanvas::mouseDown(Point point)
{
    if (!canvas.backgroundImage || !delegate)
        return;
    gestureLost(); // one whose end was not heard
    if (activeTextField) {
        // The click takes the keyboard from the field. On empty canvas it does nothing more.
        const bool isOnItem = hitTestResizeHandle(point) || hitTestAnnotation(point);
        commitTextIfNeeded();
        if (!isOnItem && delegate->selectedTool() == AnnotationTool::text)
            return;
    }
    if (const auto grip = hitTestResizeHandle(point))
        beginResizing(*grip);
    else if (const auto index = hitTestAnnotation(point))
        beginMoving(*index, point);
    else
        mouseDownOnEmptyCanvas(point);
}

void AnnotationCanvas::mouseDownOnEmptyCanvas(Point point)
{
    clearSelection();
    if (delegate->selectedTool() == AnnotationTool::text) {
        showTextField(point);
    } else {
        canvas.dragStart = point;
        canvas.liveRect = Rect{};
    }
}

void AnnotationCanvas::beginResizing(const HandleHit& grip)
{
    canvas.resizingIndex = grip.index;
    canvas.resizeHandle = grip.handle;
    canvas.resizedFrom = canvas.annotations[grip.index].rect;
    view->redraw();
}

void AnnotationCanvas::beginMoving(std::size_t index, Point point)
{
    canvas.movingIndex = index;
    canvas.selectedAnnotationIndex = index;
    canvas.moveLastPoint = point;
    view->setCursor(CanvasCursor::closedHand);
    view->redraw();
}

void AnnotationCanvas::mouseDragged(Point point)
{
    if (!canvas.backgroundImage)
        return;
    if (canvas.resizingIndex) {
        resizeAnnotation(*canvas.resizingIndex, *canvas.resizeHandle, point);
        return;
    }
    if (canvas.movingIndex) {
        const Point last = std::exchange(canvas.moveLastPoint, point).value_or(point);
        moveBy({point.x - last.x, point.y - last.y});
        return;
    }
    if (!canvas.dragStart || !delegate)
        return;
    const Point start = *canvas.dragStart;
    const AnnotationTool tool = delegate->selectedTool();
    if (tool == AnnotationTool::arrow)
        canvas.liveRect = Rect{start, {point.x - start.x, point.y - start.y}};
    else if (tool != AnnotationTool::text)
        canvas.liveRect = spannedBy(start, point);
    view->redraw();
}

void AnnotationCanvas::moveBy(Point distance)
{
    Rect& rect = checkedAt(canvas.annotations, *canvas.movingIndex).rect;
    rect.origin.x += distance.x;
    rect.origin.y += distance.y;
    view->redraw();
    reportChange();
}

void AnnotationCanvas::mouseUp(Point point)
{
    if (!canvas.backgroundImage)
        return;
    // What only the gesture has shown, handles or a preview, is to go.
    if (const auto index = canvas.resizingIndex) {
        canvas.endResize();
        view->redraw();
        reportUpdate(*index);
        return;
    }
    if (const auto index = canvas.movingIndex) {
        canvas.endMove();
        view->setCursor(CanvasCursor::openHand);
        view->redraw();
        reportUpdate(*index);
        return;
    }
    const auto made = draggedOutItem(point);
    if (canvas.endNewShape())
        view->redraw();
    if (made)
        add(*made);
}

void AnnotationCanvas::gestureLost()
{
    const auto changed = canvas.resizingIndex ? canvas.resizingIndex : canvas.movingIndex;
    const bool hadPreview = canvas.dragStart.has_value();
    canvas.endGesture();
    if (hadPreview || changed)
        view->redraw();
    if (changed)
        reportUpdate(*changed);
}

std::optional<AnnotationItem> AnnotationCanvas::draggedOutItem(Point end) const
{
    if (!delegate)
        return std::nullopt;
    const AnnotationTool tool = delegate->selectedTool();
    const Color color = currentColor(systemYellow);
    if (tool == AnnotationTool::arrow) {
        if (!canvas.dragStart)
            return std::nullopt;
        const Size vector{end.x - canvas.dragStart->x, end.y - canvas.dragStart->y};
        if (!(std::hypot(vector.width, vector.height) > minimumArrowLength))
            return std::nullopt;
        return AnnotationItem{tool, {*canvas.dragStart, vector}, std::nullopt, color};
    }
    // The tool may have changed since the drag began; a text item has no size of its own.
    if (tool == AnnotationTool::text || !canvas.liveRect)
        return std::nullopt;
    const Size size = canvas.liveRect->size;
    if (!(size.width > minimumRectangleSide && size.height > minimumRectangleSide))
        return std::nullopt;
    return AnnotationItem{tool, *canvas.liveRect, std::nullopt, color};
}

// The window may change the list while it is told, so each report has a copy.

void AnnotationCanvas::reportChange()
{
    if (delegate)
        delegate->annotationsChanged(std::vector(canvas.annotations));
}

void AnnotationCanvas::reportUpdate(std::size_t index)
{
    if (delegate)
        delegate->annotationUpdated(index, std::vector(canvas.annotations));
}

void AnnotationCanvas::add(AnnotationItem item)
{
    appendAnnotation(std::move(item));
    if (delegate)
        delegate->canvasDidAddAnnotation(std::vector(canvas.annotations));
}

Color AnnotationCanvas::currentColor(Color withoutWindow) const
{
    return delegate ? delegate->highlightColor() : withoutWindow;
}

void AnnotationCanvas::mouseMoved(Point point)
{
    const auto hit = hitTestAnnotation(point);
    if (hit != canvas.hoveredIndex) {
        canvas.hoveredIndex = hit;
        view->redraw();
    }
    if (hitTestResizeHandle(point))
        view->setCursor(CanvasCursor::resizeUpDown);
    else
        view->setCursor(hit ? CanvasCursor::openHand : CanvasCursor::crosshair);
}

void AnnotationCanvas::keyDown(const KeyPress& key)
{
    if (!delegate)
        return;
    if (key.keyCode == keyCode::backspace && canvas.selectedAnnotationIndex)
        delegate->deleteAnnotation(*canvas.selectedAnnotationIndex);
    else
        delegate->handleKeyDown(key);
}

void AnnotationCanvas::showTextField(Point point)
{
    textAnchor = point;
    textColor = currentColor(Color::white(1));
    activeTextField = view->showTextField(
        {textFieldFrame(), annotationFont, textColor, annotationTextBackground, "Type here...",
         placeholderColor});
}

// At the click, but inside of the canvas: what is typed must be readable.
Rect AnnotationCanvas::textFieldFrame() const
{
    const auto within = [](double wanted, double length, double room) {
        return std::max(std::min(wanted, room - length), 0.0);
    };
    return {
        {within(textAnchor.x, textFieldSize.width, canvas.size.width),
         within(textAnchor.y - textFieldDrop, textFieldSize.height, canvas.size.height)},
        textFieldSize};
}

void AnnotationCanvas::commitTextIfNeeded()
{
    if (!activeTextField)
        return;
    const std::string text(trimmed(activeTextField->text(), " \t")); // line breaks stay
    activeTextField.reset();
    view->becomeFirstResponder();
    if (!text.empty())
        add({AnnotationTool::text, {textAnchor, {0, 0}}, text, textColor});
}

} // namespace tallowbay
