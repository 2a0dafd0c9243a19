#pragma once

#include "base/Lifetime.h"
#include "capture/ScreenshotLocation.h"
#include "capture/ScreenshotNames.h"
#include "platform/Clock.h"
#include "platform/DesktopSettings.h"
#include "platform/Dispatch.h"
#include "platform/FileEvents.h"
#include "platform/Platform.h"

#include <functional>
#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

namespace tallowbay {

// Watches the folders that screenshots come to and reports each new screenshot file.
//
// Thread: main queue. A path is reported at most once in three seconds, however many events the
// system sends for it. Whether the screenshot is recent is not judged here.
class ScreenshotWatcher {
public:
    ScreenshotWatcher(const Platform&, const ScreenshotLocation&);

    // Called on the main queue.
    std::function<void(const std::filesystem::path&)> onScreenshotDetected;

    // Watches the places as they are at this moment. One that cannot be watched stays idle until
    // refresh() can.
    void start();
    void stop() { streams.clear(); }

    // Follows a change of the places. Those that are the same are watched on without a gap. What is
    // new beside them may have come into being with its first screenshot, so the files that are
    // there already are reported, too.
    void followPlaces();

    // For now and then: tries again to watch what is idle, and follows the names that the user
    // tells of.
    void refresh();

    struct WatchedPlace {
        ScreenshotPlace place;
        bool isIdle = false; // the system gave no means to watch it
        FileEvents::Coverage coverage = FileEvents::Coverage::whole;
    };
    std::vector<WatchedPlace> watchedPlaces() const;

    struct Noticed {
        std::filesystem::path file;
        WallTime when;
    };
    const std::optional<Noticed>& lastNoticed() const { return noticed; }

    // What is wrong with the names that the user told of.
    const std::vector<std::string>& nameProblems() const { return names.problems(); }

    void handleEvents(const std::vector<std::filesystem::path>& paths);

    bool isScreenshot(const std::filesystem::path&) const;

private:
    struct Stream : WatchedPlace {
        std::optional<Subscription> token;
    };
    using Streams = std::vector<std::unique_ptr<Stream>>;
    void watch(std::vector<ScreenshotPlace>, std::chrono::seconds);
    std::unique_ptr<Stream> takeStream(const ScreenshotPlace&);
    std::unique_ptr<Stream> startStream(const ScreenshotPlace&, std::chrono::seconds);
    void tellCoverage(Stream&, FileEvents::Coverage);
    void report(const std::filesystem::path&);
    void reportOnce(const std::filesystem::path&);
    void forgetLater(const std::filesystem::path&);

    FileEvents& fileEvents;
    Dispatch& dispatch;
    const Clock& clock;
    Console& console;
    const FileSystem& fileSystem;
    const ScreenshotLocation& location;
    ScreenshotNames names;
    Streams streams;
    std::optional<Noticed> noticed;
    std::unordered_set<std::string> recentlySeen; // touched on seenQueue only
    Lifetime lifetime;
    std::unique_ptr<SerialQueue> seenQueue; // goes first: its tasks use the rest
};

} // namespace tallowbay
