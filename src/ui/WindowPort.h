#pragma once

#include <chrono>
#include <functional>

namespace tallowbay {

// Stacking levels, back to front.
enum class WindowLevel : int { normal = 0, floating = 3, statusBar = 25, editor = 26 };

// A window as its logic sees it. Thread: main queue. Destroying it takes it off the screen.
class WindowPort {
public:
    virtual ~WindowPort() = default;

    // In front of its level, without taking the keyboard.
    virtual void orderFront() = 0;

    // 0 is invisible, 1 opaque. Takes over from an animation.
    virtual void setAlpha(double) = 0;

    // Takes over from an animation that is under way. The completion, which may be empty, runs once
    // on the main queue when the duration is over: never inside the call, also if something else
    // has taken over, not if the window is destroyed before. It may destroy the window.
    virtual void animateAlpha(
        double to, std::chrono::milliseconds, std::function<void()> completion) = 0;

    // Off the screen; an animation still completes.
    virtual void close() = 0;
};

} // namespace tallowbay
