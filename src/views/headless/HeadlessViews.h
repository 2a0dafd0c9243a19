#pragma once

#include "onboarding/OnboardingPort.h"
#include "onboarding/OnboardingWindow.h"
#include "platform/Dispatch.h"
#include "ui/ToastContent.h"
#include "ui/Views.h"
#include "ui/WindowPort.h"

#include <memory>
#include <string>
#include <vector>

namespace tallowbay::headless {

// What was asked of a window, in order, and how it stands now.
struct WindowRecord {
    std::vector<std::string> journal;
    double alpha = 1;
    bool onScreen = false;
    bool alive = true;
};

struct ToastRecord : WindowRecord {
    ToastContent content;
};

struct OnboardingRecord : WindowRecord {
    OnboardingWindow* logic = nullptr; // null once it is gone
};

// Windows that nobody sees, each with its record, which outlives it. Animations take their time on
// the given dispatch; alpha jumps at their end.
class HeadlessViews final : public Views {
public:
    explicit HeadlessViews(Dispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    std::unique_ptr<OnboardingPort> makeOnboardingWindow(OnboardingWindow&) override;
    std::unique_ptr<WindowPort> makeToast(const ToastContent&) override;

    // What the toasts said, oldest first.
    std::vector<std::string> messages() const;

    // Oldest first.
    std::vector<std::shared_ptr<OnboardingRecord>> onboardingWindows;
    std::vector<std::shared_ptr<ToastRecord>> toasts;

private:
    Dispatch& dispatch;
};

} // namespace tallowbay::headless
