#include "platform/posix/StdoutConsole.h"

#include <cerrno>
#include <ctime>
#include <string>

#include <poll.h>
#include <signal.h>

namespace tallowbay::posix {

namespace {

// Keeps a broken pipe from ending the program, whatever the other threads do with that signal.
class BrokenPipeGuard {
public:
    BrokenPipeGuard()
    {
        sigset_t pending;
        ::sigpending(&pending);
        wasPending = sigismember(&pending, SIGPIPE) == 1;
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &brokenPipe, &before);
    }
    ~BrokenPipeGuard()
    {
        const timespec atOnce{};
        while (!wasPending && ::sigtimedwait(&brokenPipe, nullptr, &atOnce) < 0 && errno == EINTR) {
        }
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    sigset_t brokenPipe;
    sigset_t before;
    bool wasPending = false;
};

bool waitUntilWritable(int descriptor)
{
    pollfd waiting{descriptor, POLLOUT, 0};
    return ::poll(&waiting, 1, -1) > 0 || errno == EINTR;
}

} // namespace

void StdoutConsole::line(std::string_view text)
{
    const auto line = std::string(text) + '\n';
    std::string_view rest = line;
    const std::scoped_lock lock(mutex);
    const BrokenPipeGuard guard;
    while (!rest.empty()) {
        const auto count = ::write(descriptor, rest.data(), rest.size());
        if (count >= 0)
            rest.remove_prefix(static_cast<std::size_t>(count));
        else if (errno == EAGAIN ? !waitUntilWritable(descriptor) : errno != EINTR)
            return;
    }
}

} // namespace tallowbay::posix
