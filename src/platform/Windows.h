#pragma once

#include "platform/Geometry.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tallowbay {

// The screens of the desktop. Thread: main queue.
//
// Coordinates are points; the main screen's lower left corner is the origin, y grows upwards.
class Screens {
public:
    virtual ~Screens() = default;

    // The full frame of the main screen; empty while no screen is connected.
    virtual std::optional<Rect> mainFrame() const = 0;
};

// How wide and high a text comes out, in points. Thread: main queue.
class TextMeasurer {
public:
    virtual ~TextMeasurer() = default;
    virtual Size measure(const std::string& text, const Font&) const = 0;
};

// Stacking levels, back to front.
enum class WindowLevel : int { normal = 0, floating = 3, statusBar = 25 };

// A window as its logic sees it. Thread: main queue. Destroying it takes it off the screen.
class WindowPort {
public:
    virtual ~WindowPort() = default;

    // In front of its level, without taking the keyboard.
    virtual void orderFront() = 0;

    // 0 is invisible, 1 opaque.
    virtual void setAlpha(double) = 0;

    // The completion runs on the main queue when the duration is over, not if the window is
    // destroyed before.
    virtual void animateAlpha(
        double to, std::chrono::milliseconds, std::function<void()> completion) = 0;
    virtual void close() = 0;
};

// One line of white text on a dark, blurred, rounded rectangle. Clicks and keys go to what lies
// below it.
struct ToastContent {
    std::string message;
    Font font;
    Rect frame; // of the window, on the screen
    double cornerRadius = 0;
    WindowLevel level = WindowLevel::statusBar;
};

class ToastViews {
public:
    virtual ~ToastViews() = default;

    // Not yet shown. Text that does not fit the frame is cut off.
    virtual std::unique_ptr<WindowPort> make(const ToastContent&) = 0;
};

} // namespace tallowbay
