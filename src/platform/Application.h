#pragma once

namespace tallowbay {

// The process as a desktop program. Thread: main queue.
class Application {
public:
    virtual ~Application() = default;

    // Ends the main loop soon; the shutdown sequence runs before the process ends.
    virtual void terminate() = 0;
};

} // namespace tallowbay
