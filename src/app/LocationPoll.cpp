#include "app/LocationPoll.h"

#include "app/ScreenshotWatcher.h"
#include "base/PreferenceKeys.h"
#include "platform/Alerts.h"
#include "platform/FileSystem.h"
#include "platform/Processes.h"
#include "platform/ToolPaths.h"

namespace tallowbay {

using namespace std::chrono_literals;

namespace {

const Alert clipboardAlert{
    "Screenshot Location Required",
    "Tallowbay needs screenshots to be saved to a folder so it can compress them.\n\n"
    "Your Mac is currently set to save screenshots to Clipboard. Tallowbay cannot detect those.",
    {"Change to Downloads", "I'll do it myself"},
};

} // namespace

LocationPoll::LocationPoll(
    const Platform& platform, const ScreenshotLocation& location, ScreenshotWatcher& watcher,
    std::function<bool()> onboardingVisible)
    : platform(platform)
    , location(location)
    , watcher(watcher)
    , onboardingVisible(std::move(onboardingVisible))
{
}

void LocationPoll::startLocationPollTimer()
{
    watchedScreenshotPath = location.systemScreenshotDirectory();
    watchedPlaces = location.places();
    locationPollTimer = platform.dispatch.repeatEvery(500ms, [this] { checkLocationChange(); });
}

void LocationPoll::checkLocationChange()
{
    const auto current = location.systemScreenshotDirectory();
    if (watchedScreenshotPath != current) {
        watchedScreenshotPath = current;
        clipboardAlertShown = false;
    }
    auto places = location.places();
    if (watchedPlaces != places) {
        watchedPlaces = std::move(places);
        watcher.followPlaces();
    }
    watcher.refresh();
    if (!onboardingVisible())
        checkScreenshotLocationIfNeeded();
}

void LocationPoll::checkScreenshotLocationIfNeeded()
{
    // An alert that is still open asks the same question, even if the folder changed meanwhile.
    if (clipboardAlertShown || openAlert || !location.targetIsClipboard())
        return;
    clipboardAlertShown = true;
    openAlert = platform.alerts.showWarning(clipboardAlert, [this](std::size_t button) {
        openAlert.reset();
        if (button == 0)
            changeToDownloads();
    });
}

void LocationPoll::changeToDownloads()
{
    const auto downloads = platform.fileSystem.homeFolder() / "Downloads";
    const auto& defaults = platform.tools.defaults;
    platform.processes.run(
        defaults,
        {"write", preference::screenshotDomain, preference::screenshotLocation, downloads});
    platform.processes.run(
        defaults, {"delete", preference::screenshotDomain, preference::screenshotTarget});
}

} // namespace tallowbay
