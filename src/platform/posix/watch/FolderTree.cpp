#include "platform/posix/watch/FolderTree.h"

#include "base/Paths.h"

#include <algorithm>
#include <utility>

#include <sys/inotify.h>
#include <sys/stat.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

FolderTree::FolderTree(Inotify& inotify, fs::path root, std::uint32_t mask, std::size_t mostFolders)
    : inotify(inotify)
    , root(std::move(root))
    , mask(mask | IN_ONLYDIR | IN_EXCL_UNLINK)
    , mostFolders(mostFolders)
{
}

bool FolderTree::watchRoot()
{
    // In this order a folder that is replaced in between is seen to be another.
    watchedRoot = identityOfRoot();
    const auto watch = inotify.add(root, mask | IN_DELETE_SELF | IN_MOVE_SELF);
    cut = cut || inotify.isUsedUp();
    if (!watchedRoot || !watch)
        return false;
    rootWatch = *watch;
    folders[rootWatch] = root;
    unexplored.push_back(root);
    return true;
}

bool FolderTree::isIntact() const
{
    return isWatching() && identityOfRoot() == watchedRoot;
}

void FolderTree::forgetAll()
{
    for (const auto& [watch, folder] : std::exchange(folders, {}))
        inotify.remove(watch);
    unexplored.clear();
    rootWatch = -1;
}

void FolderTree::add(const fs::path& folder)
{
    if (mostFolders == 1)
        return;
    cut = cut || folders.size() >= mostFolders;
    if (folders.size() >= mostFolders)
        return;
    const auto watch = inotify.add(folder, mask | IN_DONT_FOLLOW);
    cut = cut || inotify.isUsedUp();
    if (!watch || isRoot(*watch))
        return;
    const auto [known, isNew] = folders.try_emplace(*watch, folder);
    if (!isNew && known->second == folder)
        return;
    known->second = folder;
    unexplored.push_back(folder);
}

void FolderTree::forget(const fs::path& folder)
{
    std::erase_if(folders, [&](const auto& entry) {
        const bool gone = isWithin(entry.second, folder);
        if (gone)
            inotify.remove(entry.first);
        return gone;
    });
}

void FolderTree::ended(int watch)
{
    folders.erase(watch);
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
    while (!unexplored.empty()) {
        const auto folder = std::move(unexplored.front());
        unexplored.pop_front();
        list(folder, found);
        if (std::chrono::steady_clock::now() >= until)
            break;
    }
    return unexplored.empty();
}

void FolderTree::list(const fs::path& folder, const Found& found)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored))
            add(entry->path());
        else
            found(entry->path());
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
