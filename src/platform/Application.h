#pragma once

namespace tallowbay {

// The process as a desktop program. Thread: main queue.
class Application {
public:
    virtual ~Application() = default;

    // Ends the main loop soon, never inside the call; the shutdown sequence runs once before the
    // process ends. May be called before the loop has begun, which then ends at once, and again.
    virtual void terminate() = 0;
};

} // namespace tallowbay
