#pragma once

#include "platform/Clock.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowbay {

// Tells an entry from every other, whatever it is called. To be compared, and nothing else.
struct FileIdentity {
    std::array<std::uint64_t, 4> parts{};
    bool operator==(const FileIdentity&) const = default;
};

// The file system, as far as the logic needs it. Paths are absolute, and any byte but zero and the
// slash may stand in a name.
//
// Thread: any. Nothing throws; each function says what a failure looks like.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    // Follows symbolic links: a dangling link does not exist. False also where a folder on the way
    // may not be searched.
    virtual bool exists(const std::filesystem::path&) const = 0;
    virtual bool isDirectory(const std::filesystem::path&) const = 0;

    // When the entry was made: the file system's birth time; where there is none, the time of its
    // last modification. A symbolic link's own date, not its target's. Empty if there is no entry.
    virtual std::optional<WallTime> creationDate(const std::filesystem::path&) const = 0;

    // When the entry's content was last changed, or said to be: copying and unpacking may set it to
    // any time. A symbolic link's own date. Empty if there is no entry.
    virtual std::optional<WallTime> modificationDate(const std::filesystem::path&) const = 0;

    // An entry keeps its identity when it is renamed or moved within its file system. Another entry
    // has another, be it a copy, or a new one in the place of one that is gone. Further names of a
    // file share its identity; a symbolic link has its own. Empty if there is no entry.
    virtual std::optional<FileIdentity> identity(const std::filesystem::path&) const = 0;

    // Bytes. Empty if it is no readable file.
    virtual std::optional<std::uintmax_t> size(const std::filesystem::path&) const = 0;

    // Every entry of a folder, hidden ones included, in the file system's order and as
    // folder / name. Empty optional if the folder cannot be listed.
    virtual std::optional<std::vector<std::filesystem::path>> list(
        const std::filesystem::path& folder) const = 0;

    // With intermediate folders. True if the folder is there afterwards.
    virtual bool createFolders(const std::filesystem::path&) = 0;

    // At once and for good; a folder with all it holds. A symbolic link goes itself, never what it
    // points to. False if the entry, or a part of it, is still there or never was.
    virtual bool remove(const std::filesystem::path&) = 0;

    virtual std::optional<std::string> read(const std::filesystem::path&) const = 0;

    // The file has the new bytes, or on failure (false) still the old ones: written beside it,
    // synced to the disk, then put in its place.
    virtual bool writeAtomically(const std::filesystem::path&, std::string_view bytes) = 0;

    virtual std::filesystem::path homeFolder() const = 0;

    // The home of another user of the machine. Empty if there is no such user. May take its time
    // where users are asked for over a network.
    virtual std::optional<std::filesystem::path> homeFolderOf(const std::string& user) const = 0;

    // A new, empty folder for files that do not outlive their use. No other call and no other
    // program has it, and no other user can guess its name, look into it or put another in its
    // place. Empty if there can be none. The caller removes it.
    virtual std::optional<std::filesystem::path> makeTemporaryFolder() = 0;
};

} // namespace tallowbay
