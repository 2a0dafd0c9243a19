#pragma once

#include "onboarding/OnboardingPort.h"
#include "onboarding/OnboardingWindow.h"

#include <QWidget>

class QVBoxLayout;

namespace tallowbay {
class WindowSystem;
}

namespace tallowbay::views {

// The first-run window on the screen.
class OnboardingView final : public QWidget, public OnboardingPort {
public:
    OnboardingView(OnboardingWindow&, WindowSystem&);

    // The port
    void makeKeyAndOrderFront() override;

protected:
    void closeEvent(QCloseEvent*) override;

private:
    void addHeader(QVBoxLayout&);
    void addSteps(QVBoxLayout&);
    void addButton(QVBoxLayout&);
    void center();

    OnboardingWindow& logic;
    WindowSystem& windows;
};

} // namespace tallowbay::views
