#include "platform/posix/files/FileLook.h"

#include "platform/posix/FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace tallowbay::posix {

namespace {

bool isSymbolicLink(const std::filesystem::path& path)
{
    struct stat status;
    return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

// A read lease is given exactly if nobody has the file open for writing.
FileLook::Writers writersOf(const std::filesystem::path& path)
{
    using enum FileLook::Writers;
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file)
        return unknown;
    // The signal of a broken lease is for this thread alone.
    const f_owner_ex thisThread{F_OWNER_TID, ::gettid()};
    if (::fcntl(file.get(), F_SETOWN_EX, &thisThread) != 0)
        return unknown;
    if (::fcntl(file.get(), F_SETLEASE, F_RDLCK) != 0)
        return errno == EAGAIN ? some : unknown;
    ::fcntl(file.get(), F_SETLEASE, F_UNLCK);
    return none;
}

} // namespace

FileLook lookAtFile(const std::filesystem::path& path)
{
    struct stat status;
    // Opening a pipe or a device would mean something to others.
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return {
        .isFile = true,
        .isEmpty = status.st_size == 0,
        .wasLinked = status.st_nlink > 1 || isSymbolicLink(path),
        .writers = writersOf(path),
    };
}

} // namespace tallowbay::posix
