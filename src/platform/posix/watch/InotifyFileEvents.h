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
    explicit InotifyFileEvents(Dispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    std::optional<Subscription> start(
        const std::filesystem::path& folder, std::chrono::milliseconds latency, Handler) override;

private:
    Dispatch& dispatch;
};

} // namespace tallowbay::posix
