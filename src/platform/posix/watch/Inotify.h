#pragma once

#include "platform/posix/FileDescriptor.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay::posix {

struct InotifyEvent {
    int watch;
    std::uint32_t mask;
    std::string name; // of the entry in the watched folder; empty if it is about the folder itself
};

// The kernel's queue of file events. Thread: one at a time.
class Inotify {
public:
    Inotify();

    // False if the system gives no more queues.
    explicit operator bool() const { return static_cast<bool>(file); }
    int descriptor() const { return file.get(); }

    // The same folder always has the same number. Empty if it cannot be watched.
    std::optional<int> add(const std::filesystem::path&, std::uint32_t mask);

    // Whether the last folder could not be watched because the user has no watches left.
    bool isUsedUp() const { return usedUp; }

    // Events that wait already may still come, and one that says that the watch has ended.
    void remove(int watch);

    // All that wait, maybe none.
    std::vector<InotifyEvent> read();

private:
    FileDescriptor file;
    bool usedUp = false;
};

} // namespace tallowbay::posix
