#pragma once

#include "base/Lifetime.h"
#include "base/PreferenceKeys.h"
#include "base/Subscription.h"
#include "platform/Clock.h"

#include <filesystem>
#include <functional>
#include <set>

namespace tallowbay {

class Dispatch;
class FileSystem;
class ScreenshotLocation;
class UserDefaults;

// Deletes screenshots that are more than 30 days old, for good, if the user wished so: the
// compressed copies, the originals, or both.
//
// Thread: main queue.
class AutomaticCleanup {
public:
    using Paths = std::set<std::filesystem::path>;

    // Whom the check goes by, and what it acts on.
    struct Surroundings {
        Dispatch& dispatch;
        const Clock& clock;
        FileSystem& fileSystem;
        const UserDefaults& preferences;
        const ScreenshotLocation& location;
    };

    // The handler hears, on the main queue after a check, of what was past its age, also of what
    // could not be deleted.
    AutomaticCleanup(const Surroundings&, std::function<void(const Paths&)> forget);

    // Checks every 30 seconds from now on, first after 30 seconds.
    void startCleanupTimer();
    void stop() { cleanupTimer.reset(); }

    void performCleanupIfNeeded();

private:
    using Predicate = bool (*)(const std::filesystem::path&);

    bool wanted(const preference::Flag&) const;

    // Removes what was made before the cutoff, and adds it to the set.
    void removeExpired(
        const std::filesystem::path& folder, WallTime cutoff, Predicate, Paths& removed) const;

    const Surroundings surroundings;
    const std::function<void(const Paths&)> forget;
    Subscription cleanupTimer;
    Lifetime lifetime;
};

} // namespace tallowbay
