#include "platform/posix/files/FileDraft.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

bool writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto count = ::write(file, bytes.data(), bytes.size());
        if (count >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return false;
    }
    return true;
}

std::string randomName()
{
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) != sizeof number)
        number = static_cast<std::uint64_t>(::getpid());
    char name[40];
    std::snprintf(name, sizeof name, ".tallowbay-%016llx", static_cast<unsigned long long>(number));
    return name;
}

} // namespace

FileDraft::FileDraft(const fs::path& folder, mode_t permissions)
    : path(folder / randomName())
    , file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, permissions))
    , problem(file ? 0 : errno)
{
}

FileDraft::~FileDraft()
{
    if (file)
        ::unlink(path.c_str());
}

bool FileDraft::write(std::string_view bytes)
{
    errno = problem;
    return file && writeAll(file.get(), bytes) && ::fsync(file.get()) == 0;
}

void FileDraft::copyPermissions(const fs::path& from)
{
    struct stat status;
    if (::stat(from.c_str(), &status) == 0)
        ::fchmod(file.get(), status.st_mode & 07777);
}

bool FileDraft::putInPlaceOf(const fs::path& target)
{
    if (::rename(path.c_str(), target.c_str()) != 0)
        return false;
    file = FileDescriptor();
    return true;
}

} // namespace tallowbay::posix
