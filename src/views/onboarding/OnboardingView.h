#pragma once

#include "onboarding/OnboardingPort.h"
#include "onboarding/OnboardingWindow.h"

#include <QWidget>

class QVBoxLayout;

namespace tallowbay::views {

// The first-run window on the screen.
class OnboardingView final : public QWidget, public OnboardingPort {
public:
    explicit OnboardingView(OnboardingWindow&);

    // The port
    void makeKeyAndOrderFront() override;

protected:
    void closeEvent(QCloseEvent*) override;

private:
    void addHeader(QVBoxLayout&);
    void addSteps(QVBoxLayout&);
    void addButton(QVBoxLayout&);

    OnboardingWindow& logic;
};

} // namespace tallowbay::views
