#pragma once

#include "base/Lifetime.h"
#include "capture/ScreenshotLocation.h"
#include "platform/Dispatch.h"
#include "platform/FileEvents.h"
#include "platform/Platform.h"

#include <functional>
#include <optional>
#include <unordered_set>

namespace tallowbay {

// Watches the folder where the system saves screenshots and reports each new screenshot file.
//
// Thread: main queue. A path is reported at most once in three seconds, however many events the
// system sends for it. Whether the screenshot is recent is not judged here.
class ScreenshotWatcher {
public:
    ScreenshotWatcher(const Platform&, const ScreenshotLocation&);

    // Called on the main queue.
    std::function<void(const std::filesystem::path&)> onScreenshotDetected;

    // Watches the folder as it is set at this moment. If it cannot be watched, the watcher stays
    // idle.
    void start();
    void stop() { streamRef.reset(); }

    void handleEvents(const std::vector<std::filesystem::path>& paths);

    bool isScreenshot(const std::filesystem::path&) const;

private:
    void reportOnce(const std::filesystem::path&);
    void forgetLater(const std::filesystem::path&);

    FileEvents& fileEvents;
    Dispatch& dispatch;
    const FileSystem& fileSystem;
    const DesktopSettings& desktop;
    const ScreenshotLocation& location;
    std::optional<Subscription> streamRef;
    std::unordered_set<std::string> recentlySeen; // touched on seenQueue only
    Lifetime lifetime;
    std::unique_ptr<SerialQueue> seenQueue; // goes first: its tasks use the rest
};

} // namespace tallowbay
