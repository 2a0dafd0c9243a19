#pragma once

#include "platform/Clock.h"
#include "platform/posix/watch/Inotify.h"

#include <functional>
#include <stop_token>
#include <thread>

namespace tallowbay::posix {

// Hands events over as they come, on a thread of its own that no signal disturbs.
//
// Thread: made and destroyed on any but its own. Destroying it waits for the turn that runs.
class InotifyThread {
public:
    // Called with new events, or with none at the time that the call before asked for; at first at
    // once. Returns when to be called again at the latest.
    using Turn = std::function<MonotonicTime(std::vector<InotifyEvent>)>;
    InotifyThread(Inotify&, Turn);
    ~InotifyThread();
    InotifyThread(const InotifyThread&) = delete;
    InotifyThread& operator=(const InotifyThread&) = delete;

private:
    void run(const std::stop_token&);
    void waitUntil(MonotonicTime) const;

    Inotify& inotify;
    const Turn turn;
    FileDescriptor wake;
    std::jthread thread;
};

} // namespace tallowbay::posix
