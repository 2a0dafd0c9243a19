#include "onboarding/OnboardingWindow.h"

#include "base/Paths.h"
#include "capture/ScreenshotLocation.h"
#include "onboarding/OnboardingPort.h"
#include "platform/Application.h"
#include "platform/DesktopSettings.h"
#include "platform/FileSystem.h"
#include "platform/Permissions.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"
#include "ui/Views.h"

#include <utility>

namespace tallowbay {

using Step = OnboardingWindow::Step;

namespace {

Step locationStep(const Platform& platform)
{
    const ScreenshotLocation location(platform.defaults, platform.fileSystem, platform.desktop);
    const std::string title = "Screenshot Location";
    if (location.targetIsClipboard())
        return {title, "Screenshots must be saved to a folder", false};
    const auto places = location.places();
    if (places.size() > 1)
        return {title, "Screenshots of all usual tools are noticed", true};
    const auto& folder = places.front().folder;
    return {
        title,
        "Screenshots are expected in " + pathForPeople(folder, platform.fileSystem.homeFolder()),
        true};
}

Step permissionStep(std::string title, std::string purpose, const Permission& permission)
{
    if (!permission.granted() && !permission.reason.empty())
        purpose += ". " + permission.reason;
    return {std::move(title), std::move(purpose), permission.granted()};
}

std::vector<Step> makeSteps(const Platform& platform)
{
    return {
        locationStep(platform),
        permissionStep(
            "Enable Accessibility", "Needed to detect paste actions",
            platform.permissions.accessibility()),
        permissionStep(
            "Allow Screen Recording", "Required for text extraction (OCR)",
            platform.permissions.screenRecording()),
    };
}

} // namespace

OnboardingWindow::OnboardingWindow(const Platform& platform, Views& views)
    : preferences(platform.defaults.standard())
    , application(platform.application)
    , allSteps(makeSteps(platform))
    , view(views.makeOnboardingWindow(*this))
{
}

OnboardingWindow::~OnboardingWindow() = default;

void OnboardingWindow::show()
{
    onScreen = true;
    view->makeKeyAndOrderFront();
}

void OnboardingWindow::startTapped()
{
    const auto completed = std::exchange(onCompleted, nullptr); // it may destroy this window
    if (!completed)
        return;
    preferences.set(preference::onboardingCompleted.key, {true});
    completed();
}

void OnboardingWindow::windowClosed()
{
    onScreen = false;
    application.terminate();
}

} // namespace tallowbay
