#include "app/AutomaticCleanup.h"

#include "capture/ProductFolder.h"
#include "capture/ScreenshotLocation.h"
#include "capture/ScreenshotNames.h"
#include "platform/Dispatch.h"
#include "platform/FileSystem.h"
#include "platform/UserDefaults.h"

namespace tallowbay {

namespace {

using namespace std::chrono_literals;

constexpr auto interval = 30s;
constexpr auto ageLimit = 2'592'000s; // 30 days

// Only by the system's own names, since deleting is for good: what other tools name their
// screenshots, people name other things, too.
bool isOriginal(const std::filesystem::path& entry)
{
    return hasScreenshotExtension(entry) && hasScreenshotName(entry);
}

// The folder of the copies is the program's own.
bool isAnything(const std::filesystem::path&)
{
    return true;
}

} // namespace

AutomaticCleanup::AutomaticCleanup(
    const Surroundings& surroundings, std::function<void(const Paths&)> forget)
    : surroundings(surroundings)
    , forget(std::move(forget))
{
}

void AutomaticCleanup::startCleanupTimer()
{
    cleanupTimer =
        surroundings.dispatch.repeatEvery(interval, [this] { performCleanupIfNeeded(); });
}

void AutomaticCleanup::performCleanupIfNeeded()
{
    if (!wanted(preference::autoCleanupEnabled))
        return;
    const WallTime cutoff = surroundings.clock.wallNow() - ageLimit;
    Paths removed;
    if (wanted(preference::autoCleanupCompressedEnabled))
        removeExpired(optimizedFolder(surroundings.fileSystem), cutoff, isAnything, removed);
    if (wanted(preference::autoCleanupOriginalsEnabled))
        removeExpired(
            surroundings.location.systemScreenshotDirectory(), cutoff, isOriginal, removed);
    if (!removed.empty())
        surroundings.dispatch.mainAsync(lifetime.guard([this, removed] { forget(removed); }));
}

bool AutomaticCleanup::wanted(const preference::Flag& flag) const
{
    return boolValue(surroundings.preferences, flag);
}

void AutomaticCleanup::removeExpired(
    const std::filesystem::path& folder, WallTime cutoff, Predicate isCandidate,
    Paths& removed) const
{
    const auto entries = surroundings.fileSystem.list(folder);
    if (!entries)
        return;
    for (const auto& entry : *entries) {
        if (!isCandidate(entry))
            continue;
        const auto created = surroundings.fileSystem.creationDate(entry);
        if (!created || *created >= cutoff)
            continue;
        // What cannot be deleted is tried again next time; it is forgotten all the same.
        surroundings.fileSystem.remove(entry);
        removed.insert(entry);
    }
}

} // namespace tallowbay
