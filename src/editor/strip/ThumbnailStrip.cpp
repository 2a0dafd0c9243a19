#include "editor/strip/ThumbnailStrip.h"

#include "base/Fatal.h"

#include <algorithm>

namespace tallowbay {

namespace fs = std::filesystem;

ScreenshotRecord& ThumbnailStrip::at(std::size_t index)
{
    return checkedAt(records, index);
}

const ScreenshotRecord& ThumbnailStrip::at(std::size_t index) const
{
    return checkedAt(records, index);
}

std::size_t ThumbnailStrip::addURL(const fs::path& url)
{
    append(url, true, currentBatchStart);
    const std::size_t index = records.size() - 1;
    const auto place = static_cast<std::ptrdiff_t>(currentBatchInsertPosition);
    order.insert(order.begin() + place, index);
    ++currentBatchInsertPosition;
    return index;
}

void ThumbnailStrip::append(const fs::path& url, bool checked, std::size_t batchStart)
{
    ScreenshotRecord record;
    record.id = ++lastId;
    record.url = url;
    record.checked = checked;
    record.badgeNumber = static_cast<int>(records.size() - batchStart) + 1;
    record.headerColor = records.size() % headerPaletteSize;
    records.push_back(std::move(record));
}

bool ThumbnailStrip::insertBatchDivider()
{
    if (records.empty())
        return false;
    uncheckAll();
    order.insert(order.begin(), Slot());
    currentBatchInsertPosition = 0;
    currentBatchStart = records.size();
    return true;
}

ThumbnailStrip::Paths ThumbnailStrip::checkedURLs() const
{
    Paths checked;
    for (const ScreenshotRecord& record : records) {
        if (record.checked)
            checked.push_back(record.url);
    }
    return checked;
}

ThumbnailStrip::Paths ThumbnailStrip::urlsForClipboard() const
{
    Paths urls = checkedURLs();
    if (urls.empty())
        std::ranges::transform(records, std::back_inserter(urls), &ScreenshotRecord::url);
    return urls;
}

std::optional<std::size_t> ThumbnailStrip::uncheckLast()
{
    const auto last = std::find_if(
        records.rbegin(), records.rend(), [](const auto& record) { return record.checked; });
    if (last == records.rend())
        return std::nullopt;
    last->checked = false;
    return static_cast<std::size_t>(last.base() - records.begin()) - 1;
}

bool ThumbnailStrip::uncheckAll()
{
    const bool any =
        std::ranges::any_of(records, [](const auto& record) { return record.checked; });
    for (ScreenshotRecord& record : records)
        record.checked = false;
    return any;
}

bool ThumbnailStrip::remove(const std::set<fs::path>& paths)
{
    std::set<std::size_t> dropped;
    for (std::size_t index = 0; index < records.size(); ++index) {
        if (paths.contains(records[index].url))
            dropped.insert(index);
    }
    if (dropped.empty())
        return false;
    dropRecords(dropped);
    cleanUpOrphanedDividers();
    currentBatchStart = std::min(currentBatchStart, records.size());
    currentBatchInsertPosition = std::min(currentBatchInsertPosition, order.size());
    return true;
}

void ThumbnailStrip::dropRecords(const std::set<std::size_t>& indices)
{
    std::erase_if(order, [&](const Slot& slot) { return slot && indices.contains(*slot); });
    for (Slot& slot : order) {
        if (slot)
            *slot -= static_cast<std::size_t>(
                std::distance(indices.begin(), indices.lower_bound(*slot)));
    }
    for (auto index = indices.rbegin(); index != indices.rend(); ++index)
        records.erase(records.begin() + static_cast<std::ptrdiff_t>(*index));
}

// All are judged as they stand before the first one goes.
void ThumbnailStrip::cleanUpOrphanedDividers()
{
    std::vector<Slot> kept;
    for (std::size_t place = 0; place < order.size(); ++place) {
        const bool atEnd = place == 0 || place + 1 == order.size();
        if (order[place] || (!atEnd && order[place + 1]))
            kept.push_back(order[place]);
    }
    order = std::move(kept);
}

std::optional<std::size_t> ThumbnailStrip::neighbour(std::size_t index, int delta) const
{
    const auto found = std::ranges::find(order, Slot(index));
    if (found == order.end())
        return std::nullopt;
    const auto count = static_cast<std::ptrdiff_t>(order.size());
    for (auto place = found - order.begin() + delta; place >= 0 && place < count; place += delta) {
        if (const Slot& slot = order[static_cast<std::size_t>(place)])
            return slot;
    }
    return std::nullopt;
}

std::vector<SessionStore::Item> ThumbnailStrip::session() const
{
    std::vector<SessionStore::Item> items;
    for (const Slot& slot : order)
        items.push_back(
            slot ? SessionStore::Item{at(*slot).url, at(*slot).checked} : SessionStore::Item{});
    return items;
}

std::optional<std::size_t> ThumbnailStrip::restore(
    const std::vector<SessionStore::Item>& items,
    const std::function<bool(const fs::path&)>& exists)
{
    restoreItems(items, exists);
    const auto divider = std::ranges::find(order, Slot());
    currentBatchInsertPosition = static_cast<std::size_t>(divider - order.begin());
    currentBatchStart = records.size() - currentBatchInsertPosition;
    if (records.empty())
        return std::nullopt;
    pendingDivider = true;
    return currentBatchInsertPosition - 1; // before the first divider stand screenshots alone
}

void ThumbnailStrip::restoreItems(
    const std::vector<SessionStore::Item>& items,
    const std::function<bool(const fs::path&)>& exists)
{
    std::size_t groupStart = 0;
    for (const SessionStore::Item& item : items) {
        if (item.path && exists(*item.path)) {
            append(*item.path, false, groupStart);
            order.emplace_back(records.size() - 1);
        } else if (!item.path && records.size() > groupStart) {
            order.emplace_back();
            groupStart = records.size();
        }
    }
}

} // namespace tallowbay
