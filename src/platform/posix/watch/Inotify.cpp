#include "platform/posix/watch/Inotify.h"

#include <cerrno>
#include <cstring>

#include <sys/inotify.h>

namespace tallowbay::posix {

namespace {

void appendEvents(const char* block, std::size_t size, std::vector<InotifyEvent>& events)
{
    for (std::size_t offset = 0; offset < size;) {
        inotify_event head;
        std::memcpy(&head, block + offset, sizeof head);
        offset += sizeof head;
        // The name is filled up with zeros.
        std::string name(block + offset, ::strnlen(block + offset, head.len));
        events.push_back({head.wd, head.mask, std::move(name)});
        offset += head.len;
    }
}

} // namespace

Inotify::Inotify()
    : file(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
}

std::optional<int> Inotify::add(const std::filesystem::path& path, std::uint32_t mask)
{
    const int watch = ::inotify_add_watch(file.get(), path.c_str(), mask);
    usedUp = watch < 0 && errno == ENOSPC;
    return watch < 0 ? std::nullopt : std::optional(watch);
}

void Inotify::remove(int watch)
{
    ::inotify_rm_watch(file.get(), watch);
}

std::vector<InotifyEvent> Inotify::read()
{
    std::vector<InotifyEvent> events;
    std::vector<char> block(64 * 1024);
    while (true) {
        const auto count = ::read(file.get(), block.data(), block.size());
        if (count > 0)
            appendEvents(block.data(), static_cast<std::size_t>(count), events);
        else if (count == 0 || errno != EINTR)
            return events;
    }
}

} // namespace tallowbay::posix
