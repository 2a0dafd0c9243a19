#include "platform/posix/watch/FolderTree.h"

#include "base/Paths.h"

#include <algorithm>
#include <utility>

#include <sys/inotify.h>
#include <sys/stat.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

FolderTree::FolderTree(Inotify& inotify, fs::path root, std::uint32_t mask, WatchBudget* budget)
    : inotify(inotify)
    , root(std::move(root))
    , mask(mask | IN_ONLYDIR | IN_EXCL_UNLINK)
    , budget(budget)
{
}

FolderTree::~FolderTree()
{
    if (budget)
        budget->giveBack(folders.size());
}

bool FolderTree::watchRoot()
{
    // In this order a folder that is replaced in between is seen to be another.
    watchedRoot = identityOfRoot();
    const auto watch = inotify.add(root, mask | IN_DELETE_SELF | IN_MOVE_SELF);
    rootRefused = inotify.isUsedUp();
    if (!watchedRoot || !watch)
        return false;
    rootWatch = *watch;
    if (budget)
        budget->takeAnyway();
    keep(rootWatch, root);
    return true;
}

void FolderTree::keep(int watch, const fs::path& folder)
{
    folders[watch] = folder;
    unexplored.push_back(folder);
}

bool FolderTree::isIntact() const
{
    return isWatching() && identityOfRoot() == watchedRoot;
}

void FolderTree::forgetAll()
{
    for (const auto& [watch, folder] : folders)
        inotify.remove(watch);
    if (budget)
        budget->giveBack(folders.size());
    folders.clear();
    unexplored.clear();
    incomplete.clear();
    again.clear();
    rootWatch = -1;
}

void FolderTree::add(const fs::path& folder)
{
    if (budget && !watchBelow(folder))
        incomplete.insert(folder.parent_path());
}

// False if there is no watch left for it.
bool FolderTree::watchBelow(const fs::path& folder)
{
    const auto watch = inotify.add(folder, mask | IN_DONT_FOLLOW);
    if (!watch)
        return !inotify.isUsedUp();
    const auto known = folders.find(*watch);
    if (known == folders.end() && !budget->take()) {
        inotify.remove(*watch);
        return false;
    }
    if (!isRoot(*watch) && (known == folders.end() || known->second != folder))
        keep(*watch, folder);
    return true;
}

void FolderTree::forget(const fs::path& folder)
{
    const auto count = std::erase_if(folders, [&](const auto& entry) {
        const bool gone = isWithin(entry.second, folder);
        if (gone)
            inotify.remove(entry.first);
        return gone;
    });
    if (budget)
        budget->giveBack(count);
    for (auto* marked : {&incomplete, &again})
        std::erase_if(*marked, [&](const fs::path& path) { return isWithin(path, folder); });
}

void FolderTree::ended(int watch)
{
    const auto count = folders.erase(watch);
    if (budget)
        budget->giveBack(count);
    if (isRoot(watch))
        forgetAll();
}

const fs::path* FolderTree::folderOf(int watch) const
{
    const auto found = folders.find(watch);
    return found == folders.end() ? nullptr : &found->second;
}

bool FolderTree::explore(MonotonicTime until, const Found& found)
{
    while (exploreNext(found)) {
        if (std::chrono::steady_clock::now() >= until)
            break;
    }
    return unexplored.empty() && again.empty();
}

bool FolderTree::exploreNext(const Found& found)
{
    if (!unexplored.empty()) {
        const auto folder = std::move(unexplored.front());
        unexplored.pop_front();
        list(folder, found);
    } else if (!again.empty()) {
        retryNext();
    } else {
        return false;
    }
    return true;
}

// What else is in a watched folder is known.
void FolderTree::retryNext()
{
    const auto folder = std::move(again.extract(again.begin()).value());
    list(folder, [](const fs::path&) {});
    if (incomplete.contains(folder))
        incomplete.merge(again);
}

void FolderTree::list(const fs::path& folder, const Found& found)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (!entry->is_directory(ignored) || entry->is_symlink(ignored))
            found(entry->path());
        else if (!incomplete.contains(folder)) // after the first refusal none has better prospects
            add(entry->path());
    }
}

std::optional<FolderTree::Identity> FolderTree::identityOfRoot() const
{
    struct stat status;
    if (::stat(root.c_str(), &status) != 0)
        return std::nullopt;
    return Identity{status.st_dev, status.st_ino};
}

} // namespace tallowbay::posix
