#include "views/QtViews.h"

#include "base/Fatal.h"
#include "editor/window/AnnotationWindowPort.h"
#include "ui/LoaderPort.h"
#include "views/onboarding/OnboardingView.h"
#include "views/ui/ToastView.h"

namespace tallowbay::views {

// Nothing asks for these two yet.
std::unique_ptr<AnnotationWindowPort> QtViews::makeAnnotationWindow(AnnotationWindow&)
{
    fatalError("the editor's window has no view");
}

std::unique_ptr<LoaderPort> QtViews::makeLoader(const TallowLoaderPanel&)
{
    fatalError("the loader has no view");
}

std::unique_ptr<OnboardingPort> QtViews::makeOnboardingWindow(OnboardingWindow& logic)
{
    return std::make_unique<OnboardingView>(logic);
}

std::unique_ptr<WindowPort> QtViews::makeToast(const ToastContent& content)
{
    return std::make_unique<ToastView>(content, windows);
}

} // namespace tallowbay::views
