#include "app/AcceptedScreenshots.h"

#include <algorithm>
#include <utility>

namespace tallowbay {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

// For three seconds a screenshot is reported once; the report of its new name may come as late as
// file events may.
constexpr auto remembered = 3s + 500ms;

} // namespace

AcceptedScreenshots::AcceptedScreenshots(const FileSystem& fileSystem, const Clock& clock)
    : fileSystem(fileSystem)
    , clock(clock)
{
}

bool AcceptedScreenshots::begin(const fs::path& screenshot, const fs::path& copy)
{
    forgetOld();
    const auto identity = fileSystem.identity(screenshot);
    const auto known = std::ranges::find_if(entries, [&](const Entry& entry) {
        return (entry.underWay && entry.copy == copy) || wasMoved(entry, identity);
    });
    if (known == entries.end()) {
        entries.push_back({screenshot, copy, identity, clock.monotonicNow(), true, {}});
        return true;
    }
    known->file = screenshot;
    known->reportedAgain = screenshot;
    return false;
}

// If the old name still stands for the file, the new one was added beside it.
bool AcceptedScreenshots::wasMoved(
    const Entry& entry, const std::optional<FileIdentity>& seenNow) const
{
    return seenNow && seenNow == entry.identity && fileSystem.identity(entry.file) != seenNow;
}

std::optional<fs::path> AcceptedScreenshots::end(const fs::path& copy, bool made)
{
    const auto ended = std::ranges::find_if(
        entries, [&](const Entry& entry) { return entry.underWay && entry.copy == copy; });
    if (ended == entries.end())
        return std::nullopt;
    ended->underWay = false;
    ended->known = clock.monotonicNow(); // a rename during a long compression is reported late
    if (made)
        return std::nullopt;
    const auto reportedAgain = std::exchange(ended->reportedAgain, std::nullopt);
    entries.erase(ended);
    return reportedAgain;
}

void AcceptedScreenshots::forgetOld()
{
    const auto now = clock.monotonicNow();
    std::erase_if(entries, [&](const Entry& entry) {
        return !entry.underWay && now - entry.known >= remembered;
    });
}

} // namespace tallowbay
