#pragma once

#include "base/Subscription.h"

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

} // namespace tallowbay
