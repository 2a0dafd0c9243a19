#pragma once

#include "base/Subscription.h"

#include <filesystem>
#include <functional>
#include <optional>

namespace tallowbay {

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
