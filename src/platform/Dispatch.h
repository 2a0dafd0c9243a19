#pragma once

#include "base/Subscription.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

namespace tallowbay {

using Task = std::function<void()>;

// How soon background work is wanted: by a user who watches, or by one who asked for it.
enum class QualityOfService { userInteractive, userInitiated };

// Runs its tasks one after the other, in the order they were given, off the main queue.
//
// Thread: async() may be called from any thread. Destroying the queue waits for the task that is
// running and drops those that have not started.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;
    virtual void async(Task) = 0;
};

// The main queue, which owns all state, and the queues beside it.
//
// Thread: every member may be called from any thread, unless it says otherwise. A task never runs
// inside the call that gave it.
class Dispatch {
public:
    virtual ~Dispatch() = default;

    // First in, first out, also between threads that hand over one after the other.
    virtual void mainAsync(Task) = 0;

    // Runs once on the main queue, not before the delay is over.
    virtual void mainAfter(std::chrono::milliseconds delay, Task) = 0;

    // Runs on the main queue at every interval, first after one interval, until the token ends.
    // A late tick is not made up for. Main queue only.
    virtual Subscription repeatEvery(std::chrono::milliseconds interval, Task) = 0;

    // Runs on a pool of threads of that quality. The pool is bounded by the processor's cores (two
    // at least), since its tasks block on child processes; each quality has a pool of its own.
    virtual void globalAsync(QualityOfService, Task) = 0;

    // Blocks until what background tasks bring about has come true: the condition is tried at once,
    // and whenever such a task has ended, on the calling thread. False if it does not hold within
    // the limit. No other task of the main queue runs. For the shutdown; main queue only.
    virtual bool waitForBackground(
        const std::function<bool()>& condition, std::chrono::milliseconds limit) = 0;

    virtual std::unique_ptr<SerialQueue> makeSerialQueue(std::string_view label) = 0;
};

} // namespace tallowbay
