#pragma once

#include "editor/AnnotationCanvasPort.h"
#include "ui/WindowPort.h"

#include <chrono>
#include <cstddef>

namespace tallowbay {

// The editor's window as its logic sees it; also the place that its canvas is made in. Thread: main
// queue. Destroying it takes it off the screen.
class AnnotationWindowPort : public WindowPort, public AnnotationCanvasHost {
public:
    // Covers the main screen, in front of everything, and takes the keyboard; the program becomes
    // the active one. Also when it was minimized.
    virtual void makeKeyAndOrderFront() = 0;

    // If the window has the keyboard, it returns to the program that had it before; the window may
    // stay in front.
    virtual void returnKeyboard() = 0;

    // Clicks go to what lies below.
    virtual void setIgnoresMouseEvents(bool) = 0;

    // Of everything but the strip, something may have changed: the buttons, the header, the
    // placeholder, alphas. They are there at once, but for an alpha that a fade is coming to.
    virtual void lookAgain() = 0;

    // From wherever the card's alpha is now.
    virtual void animateSwatchCard(double alpha, std::chrono::milliseconds) = 0;

    // Screenshots or dividers have come or gone; an index may mean another screenshot than before.
    virtual void stripChanged() = 0;

    // What the cell of this screenshot shows.
    virtual void cellChanged(std::size_t index) = 0;

    // Scrolls no further than it takes for the whole cell to be seen.
    virtual void scrollToVisible(std::size_t index) = 0;
};

} // namespace tallowbay
