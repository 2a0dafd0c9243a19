#pragma once

#include <chrono>

namespace tallowbay {

using WallTime = std::chrono::system_clock::time_point;
using MonotonicTime = std::chrono::steady_clock::time_point;

// The time, as the logic is allowed to see it. Thread: any.
class Clock {
public:
    virtual ~Clock() = default;

    // Comparable with file dates, which lag behind by up to a tick of the file system; jumps when
    // the user sets the clock.
    virtual WallTime wallNow() const = 0;

    // Goes on as time passes and never runs backwards, whoever asks; its zero means nothing.
    virtual MonotonicTime monotonicNow() const = 0;
};

} // namespace tallowbay
