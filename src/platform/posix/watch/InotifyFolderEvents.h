#pragma once

#include "platform/Dispatch.h"
#include "platform/FolderEvents.h"

namespace tallowbay::posix {

// Folder events by inotify. A folder that vanishes and comes back is watched again.
class InotifyFolderEvents final : public FolderEvents {
public:
    explicit InotifyFolderEvents(Dispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    std::optional<Subscription> start(const std::filesystem::path& folder, Handler) override;

private:
    Dispatch& dispatch;
};

} // namespace tallowbay::posix
