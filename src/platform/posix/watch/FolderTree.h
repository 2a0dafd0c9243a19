#pragma once

#include "platform/Clock.h"
#include "platform/posix/watch/Inotify.h"

#include <deque>
#include <functional>
#include <unordered_map>

namespace tallowbay::posix {

// Watches a folder, and where wanted the folders below it, and knows which watch is whose. Symbolic
// links are followed to the folder itself, not below it. Thread: one at a time.
//
// The watches are the user's, who has some thousands for all programs: no more than told are taken,
// the folders nearest to the root first.
class FolderTree {
public:
    FolderTree(
        Inotify&, std::filesystem::path root, std::uint32_t mask, std::size_t mostFolders = 1);

    // Watches the folder and lets explore() go through it. False if it is not there.
    bool watchRoot();

    // Whether the folder that is watched is the one that the root's path names now.
    bool isIntact() const;
    bool isWatching() const { return !folders.empty(); }
    void forgetAll();

    // A subfolder came or went.
    void add(const std::filesystem::path& folder);
    void forget(const std::filesystem::path& folder);

    // The kernel ended this watch.
    void ended(int watch);

    // Whether there was a folder that could not be watched any more.
    bool isCut() const { return cut; }

    // Null if the watch was given up.
    const std::filesystem::path* folderOf(int watch) const;
    bool isRoot(int watch) const { return watch == rootWatch; }

    // Lists folders that were added, which adds those below, and hands over what else is in them;
    // stops at the time. True once there is nothing left.
    using Found = std::function<void(const std::filesystem::path&)>;
    bool explore(MonotonicTime until, const Found&);

private:
    struct Identity {
        std::uint64_t device;
        std::uint64_t number;
        bool operator==(const Identity&) const = default;
    };
    std::optional<Identity> identityOfRoot() const;
    void list(const std::filesystem::path& folder, const Found&);

    Inotify& inotify;
    const std::filesystem::path root;
    const std::uint32_t mask;
    const std::size_t mostFolders; // 1 stands for the root alone
    bool cut = false;
    std::optional<Identity> watchedRoot;
    int rootWatch = -1;
    std::unordered_map<int, std::filesystem::path> folders;
    std::deque<std::filesystem::path> unexplored;
};

} // namespace tallowbay::posix
