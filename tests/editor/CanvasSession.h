#pragma once

#include "editor/AnnotationCanvas.h"
#include "platform/headless/HeadlessTextMeasurer.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tallowbay::test {

// A canvas with a window that keeps two pictures, their items and their undone items, driven by
// random numbers. Whatever is done to it, violation() stays empty.
class CanvasSession {
public:
    // A number below the bound.
    using Choose = std::function<std::uint32_t(std::uint32_t bound)>;

    CanvasSession();
    CanvasSession(const CanvasSession&) = delete;
    CanvasSession& operator=(const CanvasSession&) = delete;
    ~CanvasSession();

    // Does one thing that a user, or the program beside the user, can do.
    void step(const Choose&);

    // What is wrong, in words.
    std::string violation(const Choose&) const;

    // How often each thing has come about, so that a test can tell that it tested something.
    struct Tally {
        int added = 0, moved = 0, deleted = 0, undone = 0, redone = 0, switched = 0, resized = 0;
    };
    Tally tally;

private:
    class Window;
    class View;
    class Screen;

    void mouse(const Choose&);
    void edit(const Choose&);
    void switchPicture(const Choose&);
    void resizeCanvas(const Choose&);
    Point somewhere(const Choose&) const;

    std::string brokenIndices() const;
    std::string brokenItems() const;
    std::string brokenMapping(const Choose&) const;
    std::string brokenHitTest(const Choose&) const;

    headless::HeadlessTextMeasurer measurer;
    std::unique_ptr<Screen> screen;
    std::unique_ptr<Window> window;
    AnnotationCanvas canvas;
    Point mousePlace;
};

} // namespace tallowbay::test
