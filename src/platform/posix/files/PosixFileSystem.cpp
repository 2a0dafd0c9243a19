#include "platform/posix/files/PosixFileSystem.h"

#include "platform/posix/Environment.h"
#include "platform/posix/files/FileBytes.h"
#include "platform/posix/files/FileDraft.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

WallTime wallTime(const statx_timestamp& stamp)
{
    using namespace std::chrono;
    return WallTime(
        duration_cast<WallTime::duration>(seconds(stamp.tv_sec) + nanoseconds(stamp.tv_nsec)));
}

std::optional<struct statx> statusOf(const fs::path& path)
{
    struct statx status;
    if (::statx(
            AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &status)
        != 0)
        return std::nullopt;
    return status;
}

// A birth time, where the file system keeps one: changing or moving the entry leaves it alone.
const statx_timestamp& birthOf(const struct statx& status)
{
    return status.stx_mask & STATX_BTIME ? status.stx_btime : status.stx_mtime;
}

// "link/" would name what the link points to.
fs::path withoutTrailingSlash(const fs::path& path)
{
    auto text = path.native();
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return text;
}

std::optional<struct stat> statusOfFolder(const fs::path& path)
{
    struct stat status;
    if (::stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return status;
}

// A folder that nobody but us can even look into.
bool isOursAlone(const fs::path& folder)
{
    const auto status = statusOfFolder(folder);
    return status && status->st_uid == ::geteuid() && (status->st_mode & 077) == 0;
}

// A folder in which nobody can put another entry in the place of ours.
bool keepsEntries(const fs::path& folder)
{
    const auto status = statusOfFolder(folder);
    if (!status || (status->st_uid != ::geteuid() && status->st_uid != 0))
        return false;
    const bool othersWrite = (status->st_mode & 022) != 0;
    return !othersWrite || (status->st_mode & S_ISVTX) != 0;
}

std::optional<fs::path> makeUnguessableFolder(const fs::path& parent)
{
    std::string name = parent / "tallowbay-XXXXXX";
    if (!::mkdtemp(name.data()))
        return std::nullopt;
    return name;
}

} // namespace

PosixFileSystem::PosixFileSystem()
    : home(environmentHome())
    , runtimeFolder(environmentFolder("XDG_RUNTIME_DIR"))
    , sharedFolders{environmentFolder("TMPDIR").value_or("/tmp"), "/tmp"}
{
}

bool PosixFileSystem::exists(const fs::path& path) const
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0;
}

bool PosixFileSystem::isDirectory(const fs::path& path) const
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<WallTime> PosixFileSystem::creationDate(const fs::path& path) const
{
    const auto status = statusOf(path);
    return status ? std::optional(wallTime(birthOf(*status))) : std::nullopt;
}

std::optional<WallTime> PosixFileSystem::modificationDate(const fs::path& path) const
{
    const auto status = statusOf(path);
    return status ? std::optional(wallTime(status->stx_mtime)) : std::nullopt;
}

// The number alone would be used again once the entry is gone.
std::optional<FileIdentity> PosixFileSystem::identity(const fs::path& path) const
{
    const auto status = statusOf(path);
    if (!status)
        return std::nullopt;
    const statx_timestamp& birth = birthOf(*status);
    return FileIdentity{
        {std::uint64_t{status->stx_dev_major} << 32 | status->stx_dev_minor, status->stx_ino,
         static_cast<std::uint64_t>(birth.tv_sec), birth.tv_nsec}};
}

std::optional<std::uintmax_t> PosixFileSystem::size(const fs::path& path) const
{
    struct stat status;
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)
        || ::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0)
        return std::nullopt;
    return static_cast<std::uintmax_t>(status.st_size);
}

std::optional<std::vector<fs::path>> PosixFileSystem::list(const fs::path& folder) const
{
    std::error_code error;
    std::vector<fs::path> entries;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        entries.push_back(entry->path());
    if (error)
        return std::nullopt;
    return entries;
}

std::optional<fs::path> PosixFileSystem::homeFolderOf(const std::string& user) const
{
    return homeOfUser(user);
}

bool PosixFileSystem::createFolders(const fs::path& path)
{
    return makeFolders(path);
}

bool PosixFileSystem::remove(const fs::path& path)
{
    const auto entry = withoutTrailingSlash(path);
    if (!entry.is_absolute() || entry == entry.root_path())
        return false;
    std::error_code error;
    const auto removed = fs::remove_all(entry, error);
    return !error && removed > 0;
}

std::optional<std::string> PosixFileSystem::read(const fs::path& path) const
{
    return readFile(path);
}

std::optional<fs::path> PosixFileSystem::makeTemporaryFolder()
{
    if (runtimeFolder && isOursAlone(*runtimeFolder)) {
        if (auto made = makeUnguessableFolder(*runtimeFolder))
            return made;
    }
    for (const fs::path& shared : sharedFolders) {
        if (!keepsEntries(shared))
            continue;
        if (auto made = makeUnguessableFolder(shared))
            return made;
    }
    return std::nullopt;
}

bool PosixFileSystem::writeAtomically(const fs::path& path, std::string_view bytes)
{
    tidyOnce(path.parent_path());
    return replaceFile(path, bytes);
}

void PosixFileSystem::tidyOnce(const fs::path& folder)
{
    {
        const std::scoped_lock lock(tidying);
        if (!tidied.insert(folder).second)
            return;
    }
    removeAbandonedDrafts(folder);
}

} // namespace tallowbay::posix
