#pragma once

#include "platform/posix/files/FileVersion.h"

#include <filesystem>
#include <functional>
#include <optional>

#include <nlohmann/json.hpp>

namespace tallowbay::posix {

// One JSON object in a file that several processes read and write.
//
// Thread: one at a time. Reading costs one look at the file's status while nobody has changed it.
// A file that cannot be read or understood counts as empty, which the error output tells once for
// each state of it; it is moved aside, to NAME.damaged or NAME.damaged.2 and so on, before
// something else takes its place. So does one that is longer or nested deeper than any preferences
// are: it would only take memory.
class JsonDomainFile {
public:
    static constexpr std::size_t mostBytes = 1 << 18;
    static constexpr std::size_t deepest = 64; // containers around what stands in the innermost

    explicit JsonDomainFile(std::filesystem::path);

    // As the file is now. Good until the next call of any member.
    const nlohmann::json& read() const;

    // Changes the newest document; no other process writes between its reading and its writing.
    // True if the result is on the disk; false also for one that could not be read again.
    bool update(const std::function<void(nlohmann::json&)>& change);

private:
    bool upToDate() const;
    void load() const;
    void complain() const;
    bool setAside() const;

    const std::filesystem::path path;
    mutable nlohmann::json document = nlohmann::json::object();
    mutable std::optional<FileVersion> version; // empty: nothing was read that can be relied on
    mutable bool damaged = false;
    mutable std::optional<FileVersion> complainedOf;
};

} // namespace tallowbay::posix
