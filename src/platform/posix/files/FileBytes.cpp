#include "platform/posix/files/FileBytes.h"

#include "platform/posix/FileDescriptor.h"

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

// The new bytes on their way; gone with this object unless they were put in place.
class Draft {
public:
    explicit Draft(const fs::path& folder);
    ~Draft();
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    bool write(std::string_view bytes);
    void copyPermissions(const fs::path& from);
    bool putInPlaceOf(const fs::path& target);

private:
    fs::path path;
    FileDescriptor file;
};

std::string randomName()
{
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) != sizeof number)
        number = static_cast<std::uint64_t>(::getpid());
    char name[40];
    std::snprintf(name, sizeof name, ".tallowbay-%016llx", static_cast<unsigned long long>(number));
    return name;
}

Draft::Draft(const fs::path& folder)
    : path(folder / randomName())
    , file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666))
{
}

Draft::~Draft()
{
    if (file)
        ::unlink(path.c_str());
}

bool Draft::write(std::string_view bytes)
{
    return file && writeAll(file.get(), bytes) && ::fsync(file.get()) == 0;
}

void Draft::copyPermissions(const fs::path& from)
{
    struct stat status;
    if (::stat(from.c_str(), &status) == 0)
        ::fchmod(file.get(), status.st_mode & 07777);
}

bool Draft::putInPlaceOf(const fs::path& target)
{
    if (::rename(path.c_str(), target.c_str()) != 0)
        return false;
    file = FileDescriptor();
    return true;
}

fs::path behindLinks(const fs::path& path)
{
    std::error_code error;
    const auto target = fs::canonical(path, error);
    return error ? path : target;
}

// So that the new name, too, outlives a power failure. Not every file system can do it.
void syncFolder(const fs::path& folder)
{
    const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened)
        ::fsync(opened.get());
}

} // namespace

bool readAll(int file, std::string& bytes)
{
    char block[64 * 1024];
    while (true) {
        const auto count = ::read(file, block, sizeof block);
        if (count == 0)
            return true;
        if (count > 0)
            bytes.append(block, static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return false;
    }
}

std::optional<std::string> readFile(const fs::path& path)
{
    // Without O_NONBLOCK, opening a pipe would wait for someone who writes to it.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status;
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(status.st_size));
    if (!readAll(file.get(), bytes))
        return std::nullopt;
    return bytes;
}

bool replaceFile(const fs::path& path, std::string_view bytes)
{
    const auto target = behindLinks(path);
    const auto folder = target.parent_path();
    Draft draft(folder);
    draft.copyPermissions(target);
    if (!draft.write(bytes) || !draft.putInPlaceOf(target))
        return false;
    syncFolder(folder);
    return true;
}

bool makeFolders(const fs::path& path)
{
    std::error_code error;
    fs::create_directories(path, error);
    return fs::is_directory(path, error);
}

} // namespace tallowbay::posix
