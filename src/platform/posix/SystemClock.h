#pragma once

#include "platform/Clock.h"

namespace tallowbay::posix {

class SystemClock : public Clock {
public:
    WallTime wallNow() const override { return WallTime::clock::now(); }
    MonotonicTime monotonicNow() const override { return MonotonicTime::clock::now(); }
};

} // namespace tallowbay::posix
