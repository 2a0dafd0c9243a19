#pragma once

#include "base/Bitmap.h"
#include "base/Geometry.h"
#include "platform/Clock.h"

#include <chrono>
#include <functional>
#include <optional>

namespace tallowbay {

class GraphicsContext;

// The program's mark, whose eyes follow the mouse and blink. Points count from its lower left
// corner, y upwards.
//
// Its view ticks and redraws it sixty times a second exactly while it is in a window.
class TallowLogo {
public:
    static constexpr std::chrono::nanoseconds tickInterval{1'000'000'000 / 60};

    // random gives numbers from 0 to 1, evenly. The icon may be null.
    TallowLogo(MonotonicTime now, std::function<double()> random, Image icon);

    // The mouse, wherever it is on the desktop; empty while the mark is in no window.
    void tick(MonotonicTime now, Size, std::optional<Point> mouse);
    void draw(GraphicsContext&, Size) const;

    Point eyeOffset() const { return offset; } // of the pupils from the middles of the eyes
    double blinkProgress() const { return blink; } // 0 open, 1 closed

private:
    void tickBlink(MonotonicTime now);
    void tickGaze(Size, const std::optional<Point>& mouse);
    void drawEye(GraphicsContext&, Point center, Size) const;

    std::function<double()> random;
    Image icon;
    Point offset;
    double blink = 0;
    MonotonicTime nextBlinkAt;
    std::optional<MonotonicTime> blinkStart;
};

// How far the lid is down, for a progress of the blink: 0 to 1, slow at both ends.
double easedBlink(double progress);

} // namespace tallowbay
