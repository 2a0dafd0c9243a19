#pragma once

#include "platform/Dispatch.h"
#include "platform/FileEvents.h"

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

    explicit InotifyFileEvents(Dispatch& dispatch, std::size_t mostFolders = usualMostFolders)
        : dispatch(dispatch)
        , mostFolders(mostFolders)
    {
    }

    std::optional<Subscription> start(const Watch&, Handlers) override;

private:
    Dispatch& dispatch;
    const std::size_t mostFolders; // of one stream
};

} // namespace tallowbay::posix
