#pragma once

#include "platform/Dispatch.h"
#include "platform/FileEvents.h"
#include "platform/posix/watch/WatchBudget.h"

#include <memory>

namespace tallowbay::posix {

// File events by inotify, each stream on a thread of its own. A complete file is reported at once,
// without waiting for the latency; only an empty one is held back for it. Where the folder's path
// leads elsewhere after a change of links or mounts, that is noticed within a quarter of a second.
//
// The dispatch outlives the streams.
class InotifyFileEvents final : public FileEvents {
public:
    // Many a system gives a user 8192 watches for all programs.
    static constexpr std::size_t usualMostFolders = 2048;

    // The bound is for all streams together, but each watches its own folder in any case. What is
    // left out is tried again in this interval.
    explicit InotifyFileEvents(
        Dispatch& dispatch, std::size_t mostFolders = usualMostFolders,
        std::chrono::milliseconds retryInterval = std::chrono::seconds(30))
        : dispatch(dispatch)
        , budget(std::make_shared<WatchBudget>(mostFolders))
        , retryInterval(retryInterval)
    {
    }

    std::optional<Subscription> start(const Watch&, Handlers) override;

private:
    Dispatch& dispatch;
    const std::shared_ptr<WatchBudget> budget;
    const std::chrono::milliseconds retryInterval;
};

} // namespace tallowbay::posix
