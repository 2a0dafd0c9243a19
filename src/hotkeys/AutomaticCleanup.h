#pragma once

#include "platform/Clock.h"
#include "platform/Lifetime.h"
#include "platform/Platform.h"
#include "platform/Subscription.h"

#include <filesystem>
#include <functional>
#include <set>

namespace tallowbay {

class ScreenshotLocation;

// Deletes screenshots that are more than 30 days old, for good, if the user wished so: the
// compressed copies, the originals, or both.
//
// Thread: main queue.
class AutomaticCleanup {
public:
    using Paths = std::set<std::filesystem::path>;

    // The handler hears, on the main queue after a check, of what was past its age, also of what
    // could not be deleted.
    AutomaticCleanup(
        const Platform&, const ScreenshotLocation&, std::function<void(const Paths&)> forget);

    // Checks every 30 seconds from now on, first after 30 seconds.
    void startCleanupTimer();
    void stop() { cleanupTimer.reset(); }

    void performCleanupIfNeeded();

private:
    using Predicate = bool (*)(const std::filesystem::path&);

    bool wanted(const char* key) const;
    bool autoCleanupCompressedEnabled() const;

    // Removes what was made before the cutoff, and adds it to the set.
    void removeExpired(
        const std::filesystem::path& folder, WallTime cutoff, Predicate, Paths& removed) const;

    const Platform platform;
    const ScreenshotLocation& location;
    const std::function<void(const Paths&)> forget;
    Subscription cleanupTimer;
    Lifetime lifetime;
};

} // namespace tallowbay
