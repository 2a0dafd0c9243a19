#pragma once

#include "platform/Subscription.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tallowbay {

// The process as a desktop program. Thread: main queue.
class Application {
public:
    virtual ~Application() = default;

    // Ends the main loop soon; the shutdown sequence runs before the process ends.
    virtual void terminate() = 0;
};

struct Alert {
    std::string message;
    std::string informativeText;
    std::vector<std::string> buttons; // the first is the default
};

// Questions that cannot wait. Thread: main queue.
class Alerts {
public:
    // The index of the button that was pressed. Closing the window counts as the last button.
    using Answer = std::function<void(std::size_t button)>;
    virtual ~Alerts() = default;

    // Shows a warning that must be answered; the main queue goes on meanwhile. The answer comes
    // once, on the main queue, and never if the token ends before.
    virtual Subscription showWarning(const Alert&, Answer) = 0;
};

// Asks whether there is a newer version of the program, and tells the user what came of it.
//
// Thread: main queue; never blocks it.
class Updater {
public:
    virtual ~Updater() = default;

    // The user asked: the result is shown in every case, also when it is "up to date" or a failure.
    // Asking again while one check is under way changes nothing.
    virtual void checkForUpdates() = 0;
};

} // namespace tallowbay
