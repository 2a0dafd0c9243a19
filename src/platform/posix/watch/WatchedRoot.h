#pragma once

#include "platform/posix/watch/FolderTree.h"

namespace tallowbay::posix {

// Where the folder stands: watched, or lost and waited for. Tells when it has come back.
class WatchedRoot {
public:
    // Mounts, and links on the way to the folder, change without an event.
    static constexpr std::chrono::milliseconds checkInterval{250};

    explicit WatchedRoot(FolderTree& tree)
        : tree(tree)
    {
    }

    // The event says that the folder itself went, moved or lies behind a mount no more.
    bool isConcerned(const InotifyEvent&) const;

    // True if the folder is watched anew: what happened before was missed.
    bool checkIfDue()
    {
        if (std::chrono::steady_clock::now() < nextCheck)
            return false;
        nextCheck = nextTick();
        return !tree.isIntact() && watchAnew();
    }
    bool watchAnew()
    {
        tree.forgetAll();
        return tree.watchRoot();
    }
    void checkSoon() { nextCheck = {}; }
    MonotonicTime dueAt() const { return nextCheck; }

private:
    FolderTree& tree;
    // The same for all roots, so that many of them wake the machine no more often than one.
    static MonotonicTime nextTick()
    {
        const auto past = std::chrono::steady_clock::now().time_since_epoch() % checkInterval;
        return std::chrono::steady_clock::now() - past + checkInterval;
    }

    MonotonicTime nextCheck = nextTick();
};

} // namespace tallowbay::posix
