#pragma once

#include "base/Subscription.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tallowbay {

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

} // namespace tallowbay
