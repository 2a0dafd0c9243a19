#include "platform/posix/watch/InotifyFileEvents.h"

#include "platform/posix/watch/CompleteFiles.h"
#include "platform/posix/watch/InotifyThread.h"
#include "platform/posix/watch/MainQueueHandler.h"
#include "platform/posix/watch/WatchedRoot.h"

#include <algorithm>
#include <utility>

#include <sys/inotify.h>
#include <sys/stat.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

using Events = std::vector<InotifyEvent>;
using Paths = std::vector<fs::path>;

// A folder with very many subfolders is gone through in pieces, so that nobody waits for long.
constexpr auto explorePiece = 50ms;

constexpr std::uint32_t fileMask =
    IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;

MonotonicTime now()
{
    return std::chrono::steady_clock::now();
}

// By the clock that marks changes of files, which stands still for some milliseconds at a time.
using FileTime = std::chrono::nanoseconds;

FileTime fileTimeOf(const timespec& time)
{
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

FileTime fileTimeNow()
{
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &time);
    return fileTimeOf(time);
}

// Creating, moving and linking in are changes.
bool hasChangedSince(const fs::path& path, FileTime since)
{
    struct stat status { };
    return ::lstat(path.c_str(), &status) == 0 && fileTimeOf(status.st_ctim) >= since;
}

// One stream. Everything but the start runs on its thread.
class FileStream {
public:
    struct Reports {
        std::function<void(Paths)> files;
        std::function<void(FileEvents::Coverage)> coverage;
    };
    FileStream(
        const FileEvents::Watch&, std::shared_ptr<WatchBudget>, std::chrono::milliseconds, Reports);

    // False if the system gives no means to watch.
    bool start();

private:
    MonotonicTime turn(Events);
    void handle(const Events&);
    void handle(const InotifyEvent&);
    void handleFolder(const fs::path&, std::uint32_t mask);
    void handleFile(const fs::path&, std::uint32_t mask);
    void reportEverything();
    void reportNews();
    void exploreMore();
    bool isNews(const fs::path&) const;
    void reportComplete();
    void retryIfDue();
    FileEvents::Coverage coverage() const;
    void reportCoverage();

    const Reports reports;
    const std::shared_ptr<WatchBudget> budget;
    const std::chrono::milliseconds retryInterval;
    MonotonicTime nextRetry = now() + retryInterval;
    Inotify inotify;
    FolderTree tree;
    WatchedRoot root{tree};
    CompleteFiles files;
    bool explored = true;
    bool reportFound = false; // what was there at the start is not reported, whenever it is found
    const std::chrono::milliseconds lookBack;
    FileEvents::Coverage reportedCoverage = FileEvents::Coverage::whole;
    std::optional<FileTime> newsSince;
    std::optional<InotifyThread> thread;
};

FileStream::FileStream(
    const FileEvents::Watch& watch, std::shared_ptr<WatchBudget> programsBudget,
    std::chrono::milliseconds retryInterval, Reports reports)
    : reports(std::move(reports))
    , budget(std::move(programsBudget))
    , retryInterval(retryInterval)
    , tree(
          inotify, watch.folder, fileMask,
          watch.depth == FileEvents::Depth::folderAlone ? nullptr : budget.get())
    , files(watch.latency, lookAtFile)
    , lookBack(watch.lookBack)
{
}

bool FileStream::start()
{
    if (!inotify)
        return false;
    if (lookBack > 0ms)
        newsSince = fileTimeNow() - lookBack;
    if (tree.watchRoot())
        exploreMore();
    else
        reportFound = !tree.isRootRefused();
    if (!newsSince)
        newsSince = fileTimeNow();
    thread.emplace(inotify, [this](Events events) { return turn(std::move(events)); });
    return true;
}

MonotonicTime FileStream::turn(Events events)
{
    handle(events);
    if (const bool refused = tree.isRootRefused(); root.checkIfDue())
        refused ? reportNews() : reportEverything();
    retryIfDue();
    if (!explored)
        exploreMore();
    reportComplete();
    reportCoverage();
    if (!explored)
        return now();
    const auto retry = tree.isCut() ? nextRetry : MonotonicTime::max();
    return std::min({root.dueAt(), files.nextLook().value_or(MonotonicTime::max()), retry});
}

void FileStream::handle(const Events& events)
{
    for (const auto& event : events)
        handle(event);
    if (std::ranges::any_of(events, [](const auto& event) { return event.mask & IN_CLOSE_WRITE; }))
        files.lookAgain(now());
}

void FileStream::handle(const InotifyEvent& event)
{
    if (event.mask & IN_Q_OVERFLOW) {
        if (root.watchAnew())
            reportEverything();
        return;
    }
    if (root.isConcerned(event))
        root.checkSoon();
    if (event.mask & IN_IGNORED)
        return tree.ended(event.watch);
    const auto* folder = tree.folderOf(event.watch);
    if (!folder || event.name.empty())
        return;
    const auto path = *folder / event.name;
    event.mask& IN_ISDIR ? handleFolder(path, event.mask) : handleFile(path, event.mask);
}

void FileStream::handleFolder(const fs::path& path, std::uint32_t mask)
{
    if (mask & (IN_MOVED_FROM | IN_DELETE))
        return tree.forget(path);
    if (!(mask & (IN_CREATE | IN_MOVED_TO)))
        return;
    tree.add(path);
    explored = false;
}

void FileStream::handleFile(const fs::path& path, std::uint32_t mask)
{
    using enum CompleteFiles::Sign;
    if (mask & (IN_MOVED_FROM | IN_DELETE))
        files.forget(path);
    else if (mask & IN_CREATE)
        files.notice(path, created, now());
    else if (mask & IN_CLOSE_WRITE)
        files.notice(path, closed, now());
    else if (mask & IN_MOVED_TO)
        files.notice(path, found, now());
}

void FileStream::reportEverything()
{
    reportFound = true;
    explored = false;
}

// Of what was there all the time, only without a watch.
void FileStream::reportNews()
{
    reportFound = false;
    explored = false;
}

void FileStream::exploreMore()
{
    explored = tree.explore(now() + explorePiece, [this](const fs::path& path) {
        if (isNews(path))
            files.notice(path, CompleteFiles::Sign::found, now());
    });
    reportFound = reportFound || explored;
}

// A folder that is come to after the start, late or for want of a watch, may have got a file since.
bool FileStream::isNews(const fs::path& path) const
{
    return reportFound || (newsSince && hasChangedSince(path, *newsSince));
}

void FileStream::reportComplete()
{
    auto complete = files.takeComplete(now());
    if (complete.empty())
        return;
    // A writer's closing is told before its file counts as closed: what comes in now of files that
    // were just seen complete is no news.
    handle(inotify.read());
    for (const auto& path : complete)
        files.forget(path);
    reports.files(std::move(complete));
}

void FileStream::retryIfDue()
{
    if (now() < nextRetry)
        return;
    nextRetry = now() + retryInterval;
    if (!tree.isCut())
        return;
    tree.retry();
    reportNews();
}

FileEvents::Coverage FileStream::coverage() const
{
    using enum FileEvents::Coverage;
    if (tree.isRootRefused())
        return nothing;
    return tree.isCut() ? nearestFolders : whole;
}

void FileStream::reportCoverage()
{
    const bool isKnown = explored || coverage() != FileEvents::Coverage::whole;
    if (isKnown && coverage() != std::exchange(reportedCoverage, coverage()))
        reports.coverage(reportedCoverage);
}

} // namespace

std::optional<Subscription> InotifyFileEvents::start(const Watch& watch, Handlers handlers)
{
    MainQueueHandler<Paths> files(dispatch, std::move(handlers.files));
    MainQueueHandler<Coverage> coverage(dispatch, std::move(handlers.coverage));
    auto stream = std::make_shared<FileStream>(
        watch, budget, retryInterval,
        FileStream::Reports{
            [files = std::move(files)](Paths paths) { files.post(std::move(paths)); },
            [coverage = std::move(coverage)](Coverage now) { coverage.post(now); }});
    if (!stream->start())
        return std::nullopt;
    return Subscription([stream = std::move(stream)]() mutable { stream.reset(); });
}

} // namespace tallowbay::posix
