#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay {

// Hands files to programs that see only a part of the disk, as those in a sandbox do: they get a
// key, for which the desktop opens the files to them.
//
// Thread: main queue.
class FileTransfer {
public:
    using Files = std::vector<std::filesystem::path>;
    using Reply = std::function<void(const std::optional<std::string>& key)>;

    virtual ~FileTransfer() = default;

    // Whether the desktop does such a thing now. May change at any time.
    virtual bool available() const = 0;

    // Asks for a key to the files, to all or none of them. Returns at once; the reply comes once,
    // later, with the key or, if it cannot be had within a second, without one. Whoever has the key
    // gets the files, any number of times, until end() or the end of the program.
    virtual void begin(const Files&, Reply) = 0;

    // From now on the key opens nothing. One that is not known is ignored.
    virtual void end(const std::string& key) = 0;
};

} // namespace tallowbay
