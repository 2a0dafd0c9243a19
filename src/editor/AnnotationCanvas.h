#pragma once

#include "editor/AnnotationCanvasPort.h"
#include "editor/CanvasState.h"
#include "editor/HitTest.h"
#include "platform/Graphics.h"
#include "platform/Keys.h"
#include "platform/TextMeasurer.h"

#include <memory>
#include <string>

namespace tallowbay {

// What the canvas tells and asks the editor's window. What it tells of the items carries all of
// them, so that the window's record follows without asking.
class AnnotationCanvasDelegate {
public:
    virtual ~AnnotationCanvasDelegate() = default;

    // Read at the moment of use.
    virtual AnnotationTool selectedTool() const = 0;
    virtual Color highlightColor() const = 0;

    // The last item is new.
    virtual void canvasDidAddAnnotation(const std::vector<AnnotationItem>&) = 0;

    // A move or a resize has ended, also one that changed nothing.
    virtual void annotationUpdated(std::size_t index, const std::vector<AnnotationItem>&) = 0;

    // A move or a resize goes on, or the items have kept their place over the picture on a canvas
    // of another size: nothing is to be saved yet.
    virtual void annotationsChanged(const std::vector<AnnotationItem>&) = 0;

    virtual void deleteAnnotation(std::size_t index) = 0;

    // Every key that the canvas has no use for.
    virtual void handleKeyDown(const KeyPress&) = 0;
};

// The part of the editor that shows a screenshot and lets the user mark it up. Points count from
// the canvas's lower left corner, y upwards.
//
// It works on a copy of the current picture's items and reports what the user has changed. Thread:
// main queue.
class AnnotationCanvas {
public:
    // The host makes the view.
    AnnotationCanvas(AnnotationCanvasHost&, const TextMeasurer&);
    ~AnnotationCanvas();

    // The window, which outlives its place here: it takes itself out (null) before it goes.
    void setDelegate(AnnotationCanvasDelegate* window) { delegate = window; }

    const CanvasState& state() const { return canvas; }
    const std::vector<AnnotationItem>& annotations() const { return canvas.annotations; }
    const Image& backgroundImage() const { return canvas.backgroundImage; }
    Size placedOn() const { return canvas.placedOn; }
    bool hasActiveTextField() const { return activeTextField != nullptr; }

    // Each asks for a redraw. Another screenshot is shown by its picture first, since its items are
    // placed over the picture that is there.

    // Items stay where they are over the picture. A canvas without room for it keeps them as they
    // are until there is room again.
    void setSize(Size);
    void setBackgroundImage(Image);

    // Those of the picture that is shown; nothing stays selected. Items of a canvas of another size
    // are told as they lie on this one.
    void setAnnotations(std::vector<AnnotationItem>, Size madeOn);
    void setAnnotations(std::vector<AnnotationItem> items)
    {
        setAnnotations(std::move(items), canvas.placedOn);
    }
    void appendAnnotation(AnnotationItem);
    void removeAnnotation(std::size_t index); // outside of the list: stops the process
    void clearSelection();

    void draw(GraphicsContext&) const;

    void mouseDown(Point);
    void mouseDragged(Point);
    void mouseUp(Point);

    // The release of the mouse will not be heard, as when the window is hidden: what has been moved
    // or resized stays where it is, a shape that was being dragged out is dropped.
    void gestureLost();
    void mouseMoved(Point);
    void keyDown(const KeyPress&);
    void resetCursorRects() { view->setCursor(CanvasCursor::crosshair); }

    std::optional<std::size_t> hitTestAnnotation(Point) const;
    std::optional<HandleHit> hitTestResizeHandle(Point) const;

    // Throughout a drag of a handle the rectangle at its beginning is the one that is resized. An
    // index outside of the list stops the process.
    void resizeAnnotation(std::size_t index, ResizeHandle, Point);

    void showTextField(Point);
    void textFieldCommitted() { commitTextIfNeeded(); }

    // Turns what was typed into an item and closes the field. Blank text is dropped. Nothing
    // happens without a field.
    void commitTextIfNeeded();

    // Closes the field; what was typed is gone.
    void abandonText() { activeTextField.reset(); }

    // The canvas takes the keyboard.
    void becomeFirstResponder() { view->becomeFirstResponder(); }

private:
    void mouseDownOnEmptyCanvas(Point);
    void beginResizing(const HandleHit&);
    void beginMoving(std::size_t index, Point);
    void moveBy(Point);
    std::optional<AnnotationItem> draggedOutItem(Point end) const;
    void reportChange();
    void reportUpdate(std::size_t index);
    void add(AnnotationItem);
    Color currentColor(Color withoutWindow) const;
    Rect textFieldFrame() const;

    const TextMeasurer& measurer;
    AnnotationCanvasDelegate* delegate = nullptr;
    CanvasState canvas;
    std::unique_ptr<AnnotationCanvasPort> view;
    std::unique_ptr<InlineTextField> activeTextField;
    Point textAnchor; // of the active field's item
    Color textColor;
};

} // namespace tallowbay
