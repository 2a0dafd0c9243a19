#pragma once

#include "base/Geometry.h"

#include <memory>
#include <string>

namespace tallowbay {

class AnnotationCanvas;

// One cursor serves every handle, corners and arrow ends alike.
enum class CanvasCursor { crosshair, openHand, closedHand, resizeUpDown };

// A single line of text that is being typed: no border, no bezel, no focus ring.
struct TextFieldLook {
    Rect frame; // in the canvas
    Font font;
    Color textColor;
    Color background;
    std::string placeholder;
    Color placeholderColor;
    bool operator==(const TextFieldLook&) const = default;
};

// The field on the screen; destroying it takes it away.
class InlineTextField {
public:
    virtual ~InlineTextField() = default;
    virtual std::string text() const = 0;
    virtual void setFrame(const Rect&) = 0; // in the canvas
};

// The canvas on the screen, as its logic sees it. Thread: main queue. Destroying it takes it away.
class AnnotationCanvasPort {
public:
    virtual ~AnnotationCanvasPort() = default;

    // All of it, soon, through AnnotationCanvas::draw.
    virtual void redraw() = 0;
    virtual void setCursor(CanvasCursor) = 0;

    // The field takes the keyboard. Its Return key is to call textFieldCommitted(), inside of which
    // the field is destroyed.
    virtual std::unique_ptr<InlineTextField> showTextField(const TextFieldLook&) = 0;

    // The canvas takes the keyboard.
    virtual void becomeFirstResponder() = 0;
};

// The view of the window that a canvas is a part of: it knows the canvas's place.
class AnnotationCanvasHost {
public:
    virtual ~AnnotationCanvasHost() = default;

    // The host outlives the view, the canvas, too.
    virtual std::unique_ptr<AnnotationCanvasPort> makeCanvasView(AnnotationCanvas&) = 0;
};

} // namespace tallowbay
