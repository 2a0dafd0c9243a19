#include "platform/posix/files/FileBytes.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/files/FileDraft.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

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

std::optional<std::string> readFile(const fs::path& path, std::size_t limit)
{
    // Without O_NONBLOCK, opening a pipe would wait for someone who writes to it.
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status;
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    const auto size = static_cast<std::size_t>(status.st_size);
    std::string bytes;
    if (size > limit)
        return std::nullopt;
    bytes.reserve(size);
    if (!readAll(file.get(), bytes))
        return std::nullopt;
    return bytes;
}

bool replaceFile(const fs::path& path, std::string_view bytes)
{
    const auto target = behindLinks(path);
    const auto folder = target.parent_path();
    FileDraft draft(folder);
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
