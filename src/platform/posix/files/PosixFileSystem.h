#pragma once

#include "platform/FileSystem.h"

#include <mutex>
#include <set>

namespace tallowbay::posix {

// The machine's own files. Home and the places for temporary folders are those of the environment
// at construction: the user's runtime folder, else $TMPDIR, else /tmp; one that others could tamper
// with is passed over.
//
// Two entries that are made in one tick of the file system's clock, some milliseconds, the second
// when the first is gone, may have one identity.
//
// Where a file that is written atomically is a symbolic link, the link stays and its target is
// replaced. Its permissions are kept; a new file gets what the umask leaves. With the first one in
// a folder goes what programs that were killed in the midst of it have left there.
class PosixFileSystem : public FileSystem {
public:
    PosixFileSystem();

    bool exists(const std::filesystem::path&) const override;
    bool isDirectory(const std::filesystem::path&) const override;
    std::optional<WallTime> creationDate(const std::filesystem::path&) const override;
    std::optional<WallTime> modificationDate(const std::filesystem::path&) const override;
    std::optional<FileIdentity> identity(const std::filesystem::path&) const override;
    std::optional<std::uintmax_t> size(const std::filesystem::path&) const override;
    std::optional<std::vector<std::filesystem::path>> list(
        const std::filesystem::path& folder) const override;
    bool createFolders(const std::filesystem::path&) override;
    bool remove(const std::filesystem::path&) override;
    std::optional<std::string> read(const std::filesystem::path&) const override;
    bool writeAtomically(const std::filesystem::path&, std::string_view bytes) override;
    std::filesystem::path homeFolder() const override { return home; }
    std::optional<std::filesystem::path> homeFolderOf(const std::string& user) const override;
    std::optional<std::filesystem::path> makeTemporaryFolder() override;

private:
    void tidyOnce(const std::filesystem::path& folder);

    std::filesystem::path home;
    std::optional<std::filesystem::path> runtimeFolder;
    std::vector<std::filesystem::path> sharedFolders;
    std::mutex tidying;
    std::set<std::filesystem::path> tidied;
};

} // namespace tallowbay::posix
