#pragma once

#include <chrono>
#include <filesystem>
#include <optional>

#include <sys/stat.h>

namespace tallowbay::posix {

// Tells one state of a file from the next without reading it.
struct FileVersion {
    // Empty if there is no file, or none that may be seen. Follows links.
    static std::optional<FileVersion> of(const std::filesystem::path& path)
    {
        struct stat status;
        if (::stat(path.c_str(), &status) != 0)
            return std::nullopt;
        return FileVersion{
            status.st_dev, status.st_ino, status.st_size,
            std::chrono::seconds(status.st_mtim.tv_sec)
                + std::chrono::nanoseconds(status.st_mtim.tv_nsec)};
    }
    bool operator==(const FileVersion&) const = default;

    dev_t device;
    ino_t number;
    off_t size;
    std::chrono::nanoseconds modified; // since 1970

    // A file that is replaced may get the number of the one before it, within one tick of the clock
    // that dates files. A version this young may stand for two states.
    bool isReliable() const
    {
        using namespace std::chrono;
        return system_clock::now().time_since_epoch() - modified > milliseconds(100);
    }
};

} // namespace tallowbay::posix
