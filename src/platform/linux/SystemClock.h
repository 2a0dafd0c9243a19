#pragma once

#include "platform/Clock.h"

namespace tallowbay::linux_desktop {

class SystemClock : public Clock {
public:
    WallTime wallNow() const override { return WallTime::clock::now(); }
    MonotonicTime monotonicNow() const override { return MonotonicTime::clock::now(); }
};

} // namespace tallowbay::linux_desktop
