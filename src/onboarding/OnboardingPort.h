#pragma once

namespace tallowbay {

// The first-run window as its logic sees it. Thread: main queue. Destroying it takes it off the
// screen.
class OnboardingPort {
public:
    virtual ~OnboardingPort() = default;

    // In front of other windows and with the keyboard, in the middle of the main screen.
    virtual void makeKeyAndOrderFront() = 0;
};

} // namespace tallowbay
