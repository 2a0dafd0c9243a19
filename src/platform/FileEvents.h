#pragma once

#include "base/Subscription.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace tallowbay {

// Reports files of a folder, and where wanted of the folders below it, once they are complete:
// closed after writing, moved in, or linked in; never while a writer still holds them.
//
// Thread: start() and the handler run on the main queue.
// A path may be reported again; a burst may be merged, and is held back no longer than the
// latency. After lost events every file of the folder is reported. A folder that vanishes and
// comes back is watched again, and what it then holds is reported.
class FileEvents {
public:
    enum class Depth { folderAlone, withSubfolders };

    struct Watch {
        std::filesystem::path folder;
        Depth depth = Depth::withSubfolders;
        // Of the files that are there already, those that came within this time are reported.
        std::chrono::milliseconds lookBack{0};
        std::chrono::milliseconds latency{500};
    };

    // How much of what is to be watched is watched.
    enum class Coverage {
        whole, // and where there is no folder yet, it is waited for
        nearestFolders, // there are more below than this program takes, or than the system gives
        nothing, // the system has no watch left, not even for the folder itself
    };

    struct Handlers {
        std::function<void(const std::vector<std::filesystem::path>&)> files;

        // Called when it changes; at first the watch counts as whole. What is left out is tried
        // again now and then.
        std::function<void(Coverage)> coverage = [](Coverage) {};
    };

    virtual ~FileEvents() = default;

    // Ends with the token. A folder that does not exist yet is waited for. Empty if the system
    // cannot watch it at all.
    virtual std::optional<Subscription> start(const Watch&, Handlers) = 0;
};

} // namespace tallowbay
