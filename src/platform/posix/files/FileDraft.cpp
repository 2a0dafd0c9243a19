#include "platform/posix/files/FileDraft.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
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

constexpr std::string_view prefix = ".tallowbay-";
constexpr std::size_t digits = 16;

bool isNameOfDraft(const std::string& name)
{
    return name.size() == prefix.size() + digits && name.starts_with(prefix)
        && name.find_first_not_of("0123456789abcdef", prefix.size()) == std::string::npos;
}

// A named pipe would keep us waiting, and a link would lead elsewhere.
void removeIfAbandoned(const fs::path& draft)
{
    const FileDescriptor file(
        ::open(draft.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status;
    if (file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)
        && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0)
        ::unlink(draft.c_str());
}

std::string randomName()
{
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) != sizeof number)
        number = static_cast<std::uint64_t>(::getpid());
    char text[digits + 1];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(number));
    return std::string(prefix) + text;
}

} // namespace

FileDraft::FileDraft(const fs::path& folder, mode_t permissions)
{
    int attempts = 10;
    do {
        if (file)
            ::unlink(path.c_str());
        path = folder / randomName();
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        file = FileDescriptor(::open(path.c_str(), flags, permissions));
        problem = file ? 0 : errno;
    } while (file && !lock() && --attempts > 0);
}

// False if it was removed before it was locked, as one that is abandoned. A file system that counts
// no links looks the same every time.
bool FileDraft::lock() const
{
    ::flock(file.get(), LOCK_EX); // not every file system can do it
    struct stat status;
    return ::fstat(file.get(), &status) != 0 || status.st_nlink > 0;
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

void removeAbandonedDrafts(const fs::path& folder)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (isNameOfDraft(entry->path().filename().native()))
            removeIfAbandoned(entry->path());
    }
}

} // namespace tallowbay::posix
