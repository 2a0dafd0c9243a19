#include "views/QtViews.h"

#include "views/editor/AnnotationWindowView.h"
#include "views/editor/EditorAccessibility.h"
#include "views/onboarding/OnboardingView.h"
#include "views/ui/LoaderView.h"
#include "views/ui/ToastView.h"

namespace tallowbay::views {

std::unique_ptr<AnnotationWindowPort> QtViews::makeAnnotationWindow(AnnotationWindow& logic)
{
    makeEditorAccessible();
    return std::make_unique<AnnotationWindowView>(logic, windows, backdrop);
}

std::unique_ptr<LoaderPort> QtViews::makeLoader(const TallowLoaderPanel& logic)
{
    return std::make_unique<LoaderView>(logic, windows, backdrop);
}

std::unique_ptr<OnboardingPort> QtViews::makeOnboardingWindow(OnboardingWindow& logic)
{
    return std::make_unique<OnboardingView>(logic, windows);
}

std::unique_ptr<WindowPort> QtViews::makeToast(const ToastContent& content)
{
    return std::make_unique<ToastView>(content, windows);
}

} // namespace tallowbay::views
