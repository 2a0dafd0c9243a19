#include "platform/posix/preferences/FolderLooks.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

constexpr int mostIdleRefreshes = 10;

} // namespace

// Its thread is nobody's to wait for: who waits for a folder that does not answer waits for long.
class FolderLooks::Worker : public std::enable_shared_from_this<Worker> {
public:
    using Results = std::map<fs::path, std::optional<Folder>>;

    explicit Worker(Look look)
        : look(std::move(look))
    {
    }

    // What was seen since the last time. Starts nothing while a look before is not done.
    Results seeAfter(std::vector<fs::path> paths, std::chrono::milliseconds patience)
    {
        std::unique_lock lock(mutex);
        if (!busy) {
            wanted = std::move(paths);
            busy = true;
            if (!std::exchange(started, true))
                std::thread([self = shared_from_this()] { self->run(); }).detach();
            changed.notify_all();
            changed.wait_for(lock, patience, [this] { return !busy; });
        }
        return std::exchange(results, {});
    }

    void end()
    {
        const std::scoped_lock lock(mutex);
        ended = true;
        changed.notify_all();
    }

private:
    void run()
    {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
        ::pthread_setname_np(::pthread_self(), "folder looks");
        std::unique_lock lock(mutex);
        while (true) {
            changed.wait(lock, [this] { return busy || ended; });
            if (ended)
                return;
            for (const fs::path& path : std::exchange(wanted, {})) {
                lock.unlock();
                const auto folder = look(path);
                lock.lock();
                results[path] = folder;
            }
            busy = false;
            changed.notify_all();
        }
    }

    const Look look;
    std::mutex mutex;
    std::condition_variable changed;
    bool started = false;
    bool ended = false;
    bool busy = false;
    std::vector<fs::path> wanted;
    Results results;
};

std::optional<FolderLooks::Folder> FolderLooks::atPath(const fs::path& path)
{
    struct stat status;
    if (::stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return Folder{status.st_dev, status.st_ino};
}

FolderLooks::FolderLooks(Look look, std::chrono::milliseconds patience)
    : patience(patience)
    , worker(std::make_shared<Worker>(std::move(look)))
{
}

FolderLooks::~FolderLooks()
{
    worker->end();
}

void FolderLooks::refresh()
{
    std::vector<fs::path> paths;
    std::erase_if(
        entries, [](const auto& entry) { return entry.second.idleRefreshes >= mostIdleRefreshes; });
    for (auto& [path, entry] : entries) {
        ++entry.idleRefreshes;
        paths.push_back(path);
    }
    lookAt(std::move(paths));
}

bool FolderLooks::areOne(const fs::path& first, const fs::path& second)
{
    return first == second || (isThere(first) && at(first) == at(second));
}

const std::optional<FolderLooks::Folder>& FolderLooks::at(const fs::path& path)
{
    if (!entries.contains(path)) {
        entries[path];
        lookAt({path});
    }
    Entry& entry = entries[path];
    entry.idleRefreshes = 0;
    return entry.folder;
}

void FolderLooks::lookAt(std::vector<fs::path> paths)
{
    for (auto& [path, folder] : worker->seeAfter(std::move(paths), patience)) {
        const auto entry = entries.find(path);
        if (entry != entries.end())
            entry->second.folder = folder;
    }
}

} // namespace tallowbay::posix
