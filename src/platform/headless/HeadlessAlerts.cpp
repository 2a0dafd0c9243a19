#include "platform/headless/HeadlessAlerts.h"

#include <stdexcept>
#include <utility>

namespace tallowbay::headless {

Subscription HeadlessAlerts::showWarning(const Alert& alert, Answer answer)
{
    const auto number = shown.size();
    shown.push_back(alert);
    waiting.push_back({number, std::move(answer)});
    return Subscription([this, number] {
        waiting.remove_if([number](const Waiting& alert) { return alert.number == number; });
    });
}

void HeadlessAlerts::press(std::size_t button)
{
    if (waiting.empty() || button >= shown[waiting.back().number].buttons.size())
        throw std::logic_error("No alert is open that has this button");
    const auto answered = std::move(waiting.back());
    waiting.pop_back();
    answered.answer(button);
}

void HeadlessAlerts::closeWindow()
{
    if (open())
        press(shown[waiting.back().number].buttons.size() - 1);
}

} // namespace tallowbay::headless
