#pragma once

#include "base/Geometry.h"

#include <optional>

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
};

} // namespace tallowbay
