#pragma once

#include "platform/Clock.h"
#include "platform/threads/GlobalQueues.h"

#include <map>

namespace tallowbay::test {

// A dispatch for programs without a toolkit: the thread that calls runUntil() is the main queue for
// as long as the call lasts.
//
// Destroying it drops what waits on the main queue; its serial queues must be gone by then.
class LoopDispatch : public Dispatch {
public:
    // Runs the main queue until the condition holds (true), or for the limit (false). The condition
    // is tried first, after every task, and at least every ten milliseconds.
    bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

    void mainAsync(Task) override;
    void mainAfter(std::chrono::milliseconds delay, Task) override;
    Subscription repeatEvery(std::chrono::milliseconds interval, Task) override;
    void globalAsync(QualityOfService, Task) override;
    bool waitForBackground(
        const std::function<bool()>& condition, std::chrono::milliseconds limit) override;
    std::unique_ptr<SerialQueue> makeSerialQueue(std::string_view label) override;

private:
    struct Repeat;

    void addTimer(MonotonicTime due, Task);
    void scheduleTick(MonotonicTime due, std::shared_ptr<Repeat>);
    void tick(MonotonicTime due, const std::shared_ptr<Repeat>&);
    void collectDueTimers();
    Task nextTask(MonotonicTime deadline);

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> ready;
    std::multimap<MonotonicTime, Task> timers; // equal times keep the order they were given in

    // Last, so that they end first: their tasks post to the main queue.
    threads::GlobalQueues globalQueues;
};

} // namespace tallowbay::test
