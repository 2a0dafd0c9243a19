#pragma once

#include "base/Geometry.h"

#include <optional>
#include <vector>

namespace tallowbay {

// The screens of the desktop. Thread: main queue.
//
// Coordinates are points; the main screen's lower left corner is the origin, y grows upwards.
class Screens {
public:
    virtual ~Screens() = default;

    // The full frame of the main screen, whose origin is zero by definition; empty while no screen
    // is connected.
    virtual std::optional<Rect> mainFrame() const = 0;

    // The full frames of all screens, in no order that means anything.
    virtual std::vector<Rect> frames() const = 0;

    // Where the mouse is. Empty where that cannot be told.
    virtual std::optional<Point> pointer() const = 0;
};

} // namespace tallowbay
