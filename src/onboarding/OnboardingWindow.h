#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tallowbay {

class Application;
class OnboardingPort;
class UserDefaults;
class Views;
struct Platform;

// The first-run window: what the program needs, whether it has it, and a button that starts it.
// Closing the window ends the program, of which nobody would see anything then; the next start
// shows it again.
//
// Thread: main queue.
class OnboardingWindow {
public:
    // Something that the program needs, as it stood when the window was made.
    struct Step {
        std::string title;
        std::string description;
        bool done = false;
    };

    OnboardingWindow(const Platform&, Views&);
    ~OnboardingWindow();

    // Called once, when the user starts the program; may destroy this window.
    std::function<void()> onCompleted;

    // In front of other windows and with the keyboard; may be called again.
    void show();
    bool visible() const { return onScreen; }

    // What the view shows: the heading, the steps in their order, the button below them.
    std::string heading() const { return "Get Tallowbay ready"; }
    const std::vector<Step>& steps() const { return allSteps; }
    std::string buttonTitle() const { return "Start"; }

    // What the user does there.
    void startTapped();
    void windowClosed();

private:
    UserDefaults& preferences;
    Application& application;
    const std::vector<Step> allSteps;
    bool onScreen = false;
    std::unique_ptr<OnboardingPort> view;
};

} // namespace tallowbay
