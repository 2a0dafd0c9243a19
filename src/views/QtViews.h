#pragma once

#include "platform/WindowSystem.h"
#include "ui/Views.h"
#include "views/ui/Backdrop.h"

namespace tallowbay::views {

// The windows as Qt paints them. Needs the QApplication.
class QtViews final : public Views {
public:
    // The window system outlives the views.
    explicit QtViews(WindowSystem& windows)
        : windows(windows)
    {
    }

    std::unique_ptr<AnnotationWindowPort> makeAnnotationWindow(AnnotationWindow&) override;
    std::unique_ptr<OnboardingPort> makeOnboardingWindow(OnboardingWindow&) override;
    std::unique_ptr<WindowPort> makeToast(const ToastContent&) override;
    std::unique_ptr<LoaderPort> makeLoader(const TallowLoaderPanel&) override;

private:
    WindowSystem& windows;
    Backdrop backdrop{windows};
};

} // namespace tallowbay::views
