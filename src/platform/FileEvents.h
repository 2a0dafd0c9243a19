#pragma once

#include "platform/Subscription.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace tallowbay {

// Reports files of a folder, and of the folders below it, once they are complete: closed after
// writing, moved in, or linked in; never while a writer still holds them.
//
// Thread: start() and the handler run on the main queue.
// A path may be reported again; a burst may be merged, and is held back no longer than the
// latency. After lost events every file of the folder is reported. A folder that vanishes and
// comes back is watched again, and what it then holds is reported.
class FileEvents {
public:
    using Handler = std::function<void(const std::vector<std::filesystem::path>&)>;
    virtual ~FileEvents() = default;

    // Ends with the token. Files that are there already are not reported. A folder that does not
    // exist yet is waited for. Empty if the system cannot watch it at all.
    virtual std::optional<Subscription> start(
        const std::filesystem::path& folder, std::chrono::milliseconds latency, Handler) = 0;
};

// Tells that an entry of one folder came, went or changed its name; what it was is not said.
//
// Thread: start() and the handler run on the main queue. Bursts may be merged into one call. That
// the folder itself vanishes, and that it comes back, counts as a change; it then is watched again.
class FolderEvents {
public:
    using Handler = std::function<void()>;
    virtual ~FolderEvents() = default;

    // Ends with the token. Empty if the folder cannot be opened for watching.
    virtual std::optional<Subscription> start(const std::filesystem::path& folder, Handler) = 0;
};

} // namespace tallowbay
