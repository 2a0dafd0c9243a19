#pragma once

#include <memory>

namespace tallowbay {

class AnnotationWindow;
class AnnotationWindowPort;
class LoaderPort;
class OnboardingPort;
class OnboardingWindow;
class TallowLoaderPanel;
class WindowPort;
struct ToastContent;

// Makes the views of all windows: the one thing that the logic knows of how they are painted.
//
// A window consists of three classes.
//
// * Its logic (OnboardingWindow) owns the state and decides everything: what is shown and enabled,
//   what a key does, what fades to what over how long. It links no toolkit, is tested without one.
// * Its port (OnboardingPort), abstract and beside the logic, has the few things that this asks of
//   its view: to come to the front, to look again, to fade. What there is to see is not among them;
//   the view asks the logic for that.
// * Its view (views/onboarding/OnboardingView), in the folder of the logic's name, is the port. It
//   holds a reference to the logic, shows what the logic's questions answer, and forwards what the
//   user does. It has no branch worth a test of its own, and a name for every control.
//
// The logic gets its view from here while it is constructed, and owns it. Its fields stand in the
// order state, view, parts: the view may ask for the state at once, and reports only later. A
// report may destroy the logic and the view with it, so it is the last thing that an event handler
// does, or has a turn of the main loop for itself.
//
// A part of a window (a canvas, a row of a list) is made in the same way, but by the port of the
// window that it stands in, because that knows its place: see AnnotationCanvasHost.
//
// views/headless has the views of tests. They write down what was asked of them.
//
// Thread: main queue.
class Views {
public:
    virtual ~Views() = default;

    virtual std::unique_ptr<AnnotationWindowPort> makeAnnotationWindow(AnnotationWindow&) = 0;
    virtual std::unique_ptr<OnboardingPort> makeOnboardingWindow(OnboardingWindow&) = 0;

    // Nobody can do anything to a toast, and nothing of it changes: its view needs no logic.
    virtual std::unique_ptr<WindowPort> makeToast(const ToastContent&) = 0;

    // What it shows never changes; nobody can do anything to it.
    virtual std::unique_ptr<LoaderPort> makeLoader(const TallowLoaderPanel&) = 0;
};

} // namespace tallowbay
