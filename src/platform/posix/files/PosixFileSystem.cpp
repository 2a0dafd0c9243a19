#include "platform/posix/files/PosixFileSystem.h"

#include "platform/posix/Environment.h"
#include "platform/posix/files/FileBytes.h"

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

// "link/" would name what the link points to.
fs::path withoutTrailingSlash(const fs::path& path)
{
    auto text = path.native();
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return text;
}

} // namespace

PosixFileSystem::PosixFileSystem()
    : home(environmentHome())
    , temporary(environmentFolder("TMPDIR").value_or("/tmp"))
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
    struct statx status;
    constexpr unsigned wanted = STATX_BTIME | STATX_MTIME;
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, wanted, &status) != 0)
        return std::nullopt;
    return wallTime(status.stx_mask & STATX_BTIME ? status.stx_btime : status.stx_mtime);
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
    std::string name = temporary / "tallowbay-XXXXXX";
    if (!::mkdtemp(name.data()))
        return std::nullopt;
    return name;
}

bool PosixFileSystem::writeAtomically(const fs::path& path, std::string_view bytes)
{
    return replaceFile(path, bytes);
}

} // namespace tallowbay::posix
