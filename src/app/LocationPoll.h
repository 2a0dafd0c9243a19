#pragma once

#include "base/Lifetime.h"
#include "base/Subscription.h"
#include "capture/ScreenshotLocation.h"
#include "platform/DesktopSettings.h"
#include "platform/Platform.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace tallowbay {

class ScreenshotWatcher;

// Looks twice a second where screenshots come to: follows a change of the folders, and
// warns once per folder setting when screenshots go to the clipboard. Polling is deliberate: there
// is no notification that every kind of setting would send.
//
// Thread: main queue.
class LocationPoll {
public:
    // The check for the clipboard is left to the first-run window while that is visible.
    LocationPoll(
        const Platform&, const ScreenshotLocation&, ScreenshotWatcher&,
        std::function<bool()> onboardingVisible);

    void startLocationPollTimer();
    void stop() { locationPollTimer.reset(); }

    void checkLocationChange();
    void checkScreenshotLocationIfNeeded();

private:
    void changeToDownloads();

    const Platform platform;
    const ScreenshotLocation& location;
    ScreenshotWatcher& watcher;
    std::function<bool()> onboardingVisible;
    std::optional<std::filesystem::path> watchedScreenshotPath;
    std::vector<ScreenshotPlace> watchedPlaces;
    bool clipboardAlertShown = false;
    Subscription openAlert;
    Subscription locationPollTimer;
};

} // namespace tallowbay
