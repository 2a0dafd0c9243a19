#pragma once

#include "editor/ScreenshotRecord.h"
#include "editor/strip/SessionStore.h"

#include <functional>
#include <set>

namespace tallowbay {

// A header has one of so many colours.
inline constexpr std::size_t headerPaletteSize = 5;

// The strip of recent screenshots as a model: the screenshots in the order they were added, and how
// they stand on the screen, where the newest batch is leftmost, the oldest screenshot of a batch is
// its leftmost, and a divider stands between two batches.
//
// It changes nothing but itself: what is shown, saved or copied after a change is its owner's
// business. An index outside of the list stops the process. Thread: main queue.
class ThumbnailStrip {
public:
    using Paths = std::vector<std::filesystem::path>;

    // A place on the screen: the index of a screenshot, or empty for a divider.
    using Slot = std::optional<std::size_t>;

    const std::vector<ScreenshotRecord>& screenshots() const { return records; }
    ScreenshotRecord& at(std::size_t index);
    const ScreenshotRecord& at(std::size_t index) const;
    bool empty() const { return records.empty(); }
    std::size_t size() const { return records.size(); }

    const std::vector<Slot>& slots() const { return order; } // left to right

    // A divider is due before the next screenshot.
    bool pendingDivider = false;

    // Adds a screenshot to the current batch, checked, and returns its index. The same file may be
    // there more than once.
    std::size_t addURL(const std::filesystem::path& url);

    // Begins a new batch at the far left, and unchecks all that is there. False, and nothing
    // happens, in an empty strip.
    bool insertBatchDivider();

    // In the order of the list, not of the screen.
    Paths checkedURLs() const;

    // What belongs on the clipboard: the checked screenshots, or all of them if none is checked.
    Paths urlsForClipboard() const;

    // Unchecks the last checked screenshot and returns its index; empty if none is checked.
    std::optional<std::size_t> uncheckLast();

    // True if any was checked.
    bool uncheckAll();

    // Drops every screenshot of these files, and the dividers that then separate nothing. True if
    // there was any.
    bool remove(const std::set<std::filesystem::path>& paths);

    // The screenshot that stands beside this one on the screen: -1 is to the left, 1 to the right.
    // Empty at either end.
    std::optional<std::size_t> neighbour(std::size_t index, int delta) const;

    std::vector<SessionStore::Item> session() const;

    // Fills an empty strip with what was saved, as far as it still exists, all of it unchecked. The
    // index of the screenshot to be shown, the last one of the leftmost batch; empty if nothing was
    // there to restore.
    std::optional<std::size_t> restore(
        const std::vector<SessionStore::Item>&,
        const std::function<bool(const std::filesystem::path&)>& exists);

private:
    void append(const std::filesystem::path& url, bool checked, std::size_t batchStart);
    void restoreItems(
        const std::vector<SessionStore::Item>&,
        const std::function<bool(const std::filesystem::path&)>& exists);
    void dropRecords(const std::set<std::size_t>& indices);
    void cleanUpOrphanedDividers();

    std::vector<ScreenshotRecord> records;
    std::vector<Slot> order;
    std::size_t currentBatchStart = 0; // the first screenshot of the current batch
    std::size_t currentBatchInsertPosition = 0; // the place of its next screenshot
    std::uint64_t lastId = 0;
};

} // namespace tallowbay
