#pragma once

#include "ui/WindowPort.h"

namespace tallowbay {

struct Point;

// The loader on the screen, as its logic sees it. Thread: main queue. Destroying it takes it off
// the screen. It never takes the keyboard, and clicks go through it.
class LoaderPort : public WindowPort {
public:
    // Of its lower left corner, in the coordinates of Screens.
    virtual void setOrigin(Point) = 0;

    virtual void startPulse() = 0;
    virtual void stopPulse() = 0;
};

} // namespace tallowbay
