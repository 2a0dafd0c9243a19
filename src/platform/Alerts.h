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
    std::vector<std::string> buttons; // at least one; the first is the default
};

// Questions that cannot wait. Several may be open at once, each with its own answer.
//
// Thread: main queue.
class Alerts {
public:
    // The index of the button that was pressed. Closing the window counts as the last button.
    using Answer = std::function<void(std::size_t button)>;
    virtual ~Alerts() = default;

    // Shows a warning that must be answered; the main queue goes on meanwhile. The answer comes
    // once, on the main queue, and takes the alert away. The token, too, takes it away when it ends
    // before, and there is no answer then. The answer may end its token or show another alert.
    virtual Subscription showWarning(const Alert&, Answer) = 0;
};

} // namespace tallowbay
