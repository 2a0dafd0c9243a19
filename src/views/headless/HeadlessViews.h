#pragma once

#include "editor/window/AnnotationWindow.h"
#include "editor/window/AnnotationWindowPort.h"
#include "onboarding/OnboardingPort.h"
#include "onboarding/OnboardingWindow.h"
#include "platform/Dispatch.h"
#include "ui/LoaderPort.h"
#include "ui/TallowLoaderPanel.h"
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

// The canvas's view.
struct CanvasRecord {
    std::vector<std::string> journal; // "field shown", "field removed", "focus"
    std::string typed; // by a test, into the field
    bool fieldIsOpen = false;
    bool hasFocus = false;
    int redraws = 0;
};

struct EditorRecord : WindowRecord {
    AnnotationWindow* logic = nullptr; // null once it is gone
    CanvasRecord canvas;
    bool ignoresMouseEvents = false;
    double swatchCardAlpha = 0; // what it has now, or is animated to
    int looks = 0; // times that it was asked to look again
    std::vector<std::size_t> changedCells; // in their order, with repetitions
    int stripChanges = 0;
    std::vector<std::size_t> scrolledTo;
};

struct LoaderRecord : WindowRecord {
    Point origin;
    bool pulses = false;
};

// Windows that nobody sees, each with its record, which outlives it. Animations take their time on
// the given dispatch; alpha jumps at their end.
class HeadlessViews final : public Views {
public:
    explicit HeadlessViews(Dispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    std::unique_ptr<AnnotationWindowPort> makeAnnotationWindow(AnnotationWindow&) override;
    std::unique_ptr<OnboardingPort> makeOnboardingWindow(OnboardingWindow&) override;
    std::unique_ptr<WindowPort> makeToast(const ToastContent&) override;
    std::unique_ptr<LoaderPort> makeLoader(const TallowLoaderPanel&) override;

    // What the toasts said, oldest first.
    std::vector<std::string> messages() const;

    // Oldest first.
    std::vector<std::shared_ptr<EditorRecord>> editors;
    std::vector<std::shared_ptr<LoaderRecord>> loaders;
    std::vector<std::shared_ptr<OnboardingRecord>> onboardingWindows;
    std::vector<std::shared_ptr<ToastRecord>> toasts;

private:
    Dispatch& dispatch;
};

} // namespace tallowbay::headless
