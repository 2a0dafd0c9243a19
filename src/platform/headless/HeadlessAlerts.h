#pragma once

#include "platform/Alerts.h"

#include <list>
#include <vector>

namespace tallowbay::headless {

// Answers come inside press() and closeWindow(), as from the main queue's turn for a click. Both
// act on the alert that stands in front, the last one that was shown.
class HeadlessAlerts final : public Alerts {
public:
    Subscription showWarning(const Alert& alert, Answer answer) override;

    void press(std::size_t button);
    void closeWindow();
    bool open() const { return !waiting.empty(); }
    std::size_t openCount() const { return waiting.size(); }

    std::vector<Alert> shown;

private:
    struct Waiting {
        std::size_t number; // its place among the shown ones
        Answer answer;
    };

    std::list<Waiting> waiting;
};

} // namespace tallowbay::headless
