#pragma once

#include "platform/Dispatch.h"

#include <QObject>

#include <deque>
#include <mutex>

namespace tallowbay::qt {

// The main queue on Qt's event loop: tasks run first in, first out, between the loop's own events.
//
// Thread: async() and after() from any thread, everything else on the thread that made it, which
// is the main queue's. Tasks that have not run when it is destroyed are dropped.
class MainQueue final : private QObject {
public:
    MainQueue() = default;
    ~MainQueue() override;

    void async(Task);
    void after(std::chrono::milliseconds delay, Task);
    Subscription repeatEvery(std::chrono::milliseconds interval, Task);

private:
    bool event(QEvent*) override;
    void drain();
    Task takeFirst();
    void startTimer(std::chrono::steady_clock::time_point due, Task);

    std::mutex mutex;
    std::deque<Task> tasks; // guarded by the mutex, as is the next
    bool wakeUpPosted = false;
};

} // namespace tallowbay::qt
