#include "platform/posix/files/PrivateFile.h"

#include "platform/posix/files/FileDraft.h"

#include <cerrno>
#include <system_error>

#include <sys/stat.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

constexpr mode_t forItsUserOnly = 0600;

std::string systemsReason()
{
    return std::generic_category().message(errno);
}

} // namespace

std::optional<std::string> obstacleAt(const fs::path& path)
{
    struct stat status;
    if (::lstat(path.c_str(), &status) != 0)
        return errno == ENOENT ? std::nullopt : std::optional(systemsReason());
    if (S_ISLNK(status.st_mode))
        return "is a symbolic link, and none is followed";
    if (!S_ISREG(status.st_mode))
        return "is there already, and no regular file";
    return std::nullopt;
}

std::optional<std::string> writePrivateFile(const fs::path& path, std::string_view bytes)
{
    FileDraft draft(path.parent_path(), forItsUserOnly);
    if (!draft.write(bytes))
        return systemsReason();
    // Something may come there between this question and the next line. It is then replaced, not
    // followed: that is the system's promise for a rename.
    if (const auto obstacle = obstacleAt(path))
        return obstacle;
    if (!draft.putInPlaceOf(path))
        return systemsReason();
    return std::nullopt;
}

} // namespace tallowbay::posix
