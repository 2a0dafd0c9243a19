#include "platform/posix/watch/InotifyThread.h"

#include <algorithm>
#include <ctime>

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>

namespace tallowbay::posix {

InotifyThread::InotifyThread(Inotify& inotify, Turn turn)
    : inotify(inotify)
    , turn(std::move(turn))
    , wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , thread([this](const std::stop_token& stop) { run(stop); })
{
}

InotifyThread::~InotifyThread()
{
    thread.request_stop();
    ::eventfd_write(wake.get(), 1);
    thread.join();
}

void InotifyThread::run(const std::stop_token& stop)
{
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
    ::pthread_setname_np(::pthread_self(), "file events");
    while (!stop.stop_requested())
        waitUntil(turn(inotify.read()));
}

void InotifyThread::waitUntil(MonotonicTime time) const
{
    using namespace std::chrono;
    const auto rest = std::max(time - steady_clock::now(), steady_clock::duration::zero());
    const auto whole = duration_cast<seconds>(rest);
    const timespec timeout{whole.count(), (rest - whole).count()};
    pollfd files[] = {{inotify.descriptor(), POLLIN, 0}, {wake.get(), POLLIN, 0}};
    ::ppoll(files, std::size(files), &timeout, nullptr);
}

} // namespace tallowbay::posix
