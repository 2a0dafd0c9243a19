#pragma once

#include "platform/Clock.h"
#include "platform/posix/watch/Inotify.h"
#include "platform/posix/watch/WatchBudget.h"

#include <deque>
#include <functional>
#include <set>
#include <unordered_map>

namespace tallowbay::posix {

// Watches a folder, and where wanted the folders below it, and knows which watch is whose. Symbolic
// links are followed to the folder itself, not below it. Thread: one at a time.
//
// The watches are the user's, who has some thousands for all programs: the folders below take no
// more than the budget has, those nearest to the root first. The root is always watched.
class FolderTree {
public:
    // Without a budget the root is watched alone. It outlives the tree.
    FolderTree(
        Inotify&, std::filesystem::path root, std::uint32_t mask, WatchBudget* budget = nullptr);
    ~FolderTree();
    FolderTree(const FolderTree&) = delete;
    FolderTree& operator=(const FolderTree&) = delete;

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

    // Whether there are folders for which no watch is left; and whether the root is such a one.
    bool isCut() const { return !incomplete.empty() || !again.empty(); }
    bool isRootRefused() const { return rootRefused; }

    // Lets explore() try these again, as far as there are watches now.
    void retry() { again.merge(incomplete); }

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
    void keep(int watch, const std::filesystem::path& folder);
    bool watchBelow(const std::filesystem::path& folder);
    bool exploreNext(const Found&);
    void retryNext();
    void list(const std::filesystem::path& folder, const Found&);

    Inotify& inotify;
    const std::filesystem::path root;
    const std::uint32_t mask;
    WatchBudget* const budget;
    bool rootRefused = false;
    std::optional<Identity> watchedRoot;
    int rootWatch = -1;
    std::unordered_map<int, std::filesystem::path> folders;
    std::deque<std::filesystem::path> unexplored;

    // Watched folders with one below that is not.
    std::set<std::filesystem::path> incomplete;
    std::set<std::filesystem::path> again; // of them, to be tried now
};

} // namespace tallowbay::posix
