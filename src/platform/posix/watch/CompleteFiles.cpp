#include "platform/posix/watch/CompleteFiles.h"

#include <algorithm>
#include <map>

namespace tallowbay::posix {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

// A closed file may count as open for a moment longer, so the first look comes soon. Later ones
// are rare: they matter only where a writer's end is not told, such as that of a file that was
// linked in while it was being written under another name.
constexpr auto firstPause = 1ms;
constexpr auto longestPause = 250ms;

} // namespace

CompleteFiles::CompleteFiles(std::chrono::milliseconds emptyHold, Look look)
    : emptyHold(emptyHold)
    , look(std::move(look))
{
}

void CompleteFiles::notice(const fs::path& path, Sign sign, MonotonicTime now)
{
    auto& file = files.try_emplace(path.native(), Waiting{++lastOrder, now, now, firstPause, true})
                     .first->second;
    file.due = now;
    file.pause = firstPause;
    file.createdOnly = file.createdOnly && sign == Sign::created;
}

void CompleteFiles::lookAgain(MonotonicTime now)
{
    for (auto& [path, file] : files) {
        if (file.pause == firstPause)
            continue;
        file.due = now;
        file.pause = firstPause;
    }
}

void CompleteFiles::forget(const fs::path& path)
{
    files.erase(path.native());
}

std::vector<fs::path> CompleteFiles::takeComplete(MonotonicTime now)
{
    std::map<std::uint64_t, fs::path> complete;
    for (auto file = files.begin(); file != files.end();) {
        const fs::path path = file->first;
        const auto verdict = judge(path, file->second, now);
        if (verdict == Verdict::complete)
            complete.emplace(file->second.order, path);
        file = verdict == Verdict::wait ? std::next(file) : files.erase(file);
    }
    std::vector<fs::path> inOrder;
    for (auto& [order, path] : complete)
        inOrder.push_back(std::move(path));
    return inOrder;
}

CompleteFiles::Verdict CompleteFiles::judge(
    const fs::path& path, Waiting& file, MonotonicTime now) const
{
    if (file.due > now)
        return Verdict::wait;
    const auto seen = look(path);
    if (!seen.isFile)
        return Verdict::drop;
    if (seen.writers == FileLook::Writers::some)
        return waitForWriter(file, now);
    // Where writers cannot be seen, a writer that creates the file will be heard to close it.
    if (seen.writers == FileLook::Writers::unknown && file.createdOnly && !seen.wasLinked)
        return Verdict::drop;
    if (!seen.isEmpty || now >= file.noticed + emptyHold)
        return Verdict::complete;
    file.due = file.noticed + emptyHold;
    return Verdict::wait;
}

CompleteFiles::Verdict CompleteFiles::waitForWriter(Waiting& file, MonotonicTime now) const
{
    file.due = now + file.pause;
    file.pause = std::min<std::chrono::milliseconds>(file.pause * 2, longestPause);
    return Verdict::wait;
}

std::optional<MonotonicTime> CompleteFiles::nextLook() const
{
    const auto next =
        std::ranges::min_element(files, {}, [](const auto& entry) { return entry.second.due; });
    return next == files.end() ? std::nullopt : std::optional(next->second.due);
}

} // namespace tallowbay::posix
