#include "support/LoopDispatch.h"

#include "platform/threads/ThreadSerialQueue.h"

#include <algorithm>
#include <utility>

namespace tallowbay::test {

namespace {

using namespace std::chrono_literals;

// A condition may depend on what no task tells of, such as a file.
constexpr auto longestWait = 10ms;

MonotonicTime now()
{
    return std::chrono::steady_clock::now();
}

} // namespace

struct LoopDispatch::Repeat {
    std::chrono::milliseconds interval;
    std::shared_ptr<Task> task; // null once the token has ended
};

bool LoopDispatch::runUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const auto end = now() + limit;
    while (!condition()) {
        if (now() >= end)
            return false;
        if (const auto task = nextTask(std::min(end, now() + longestWait)))
            task();
    }
    return true;
}

void LoopDispatch::mainAsync(Task task)
{
    const std::scoped_lock lock(mutex);
    ready.push_back(std::move(task));
    changed.notify_one();
}

void LoopDispatch::mainAfter(std::chrono::milliseconds delay, Task task)
{
    addTimer(now() + delay, std::move(task));
}

Subscription LoopDispatch::repeatEvery(std::chrono::milliseconds interval, Task task)
{
    auto repeat =
        std::make_shared<Repeat>(Repeat{interval, std::make_shared<Task>(std::move(task))});
    const std::weak_ptr weak = repeat;
    scheduleTick(now() + interval, std::move(repeat));
    return Subscription([weak] {
        if (const auto ended = weak.lock())
            ended->task.reset();
    });
}

void LoopDispatch::globalAsync(QualityOfService quality, Task task)
{
    globalQueues.async(quality, std::move(task));
}

bool LoopDispatch::waitForBackground(
    const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    return globalQueues.waitUntil(condition, limit);
}

std::unique_ptr<SerialQueue> LoopDispatch::makeSerialQueue(std::string_view label)
{
    return std::make_unique<threads::ThreadSerialQueue>(label);
}

void LoopDispatch::addTimer(MonotonicTime due, Task task)
{
    const std::scoped_lock lock(mutex);
    timers.emplace(due, std::move(task));
    changed.notify_one();
}

void LoopDispatch::scheduleTick(MonotonicTime due, std::shared_ptr<Repeat> repeat)
{
    addTimer(due, [this, due, repeat = std::move(repeat)] { tick(due, repeat); });
}

void LoopDispatch::tick(MonotonicTime due, const std::shared_ptr<Repeat>& repeat)
{
    // The task may end its own token.
    const auto task = repeat->task;
    if (!task)
        return;
    (*task)();
    if (!repeat->task)
        return;
    const auto next = due + repeat->interval;
    scheduleTick(next > now() ? next : now() + repeat->interval, repeat);
}

void LoopDispatch::collectDueTimers()
{
    const auto firstLater = timers.upper_bound(now());
    for (auto timer = timers.begin(); timer != firstLater; timer = timers.erase(timer))
        ready.push_back(std::move(timer->second));
}

// Waits for a task, no longer than the deadline; empty if none came.
Task LoopDispatch::nextTask(MonotonicTime deadline)
{
    std::unique_lock lock(mutex);
    collectDueTimers();
    if (ready.empty()) {
        const auto wake = timers.empty() ? deadline : std::min(deadline, timers.begin()->first);
        changed.wait_until(lock, wake);
        collectDueTimers();
    }
    if (ready.empty())
        return nullptr;
    auto task = std::move(ready.front());
    ready.pop_front();
    return task;
}

} // namespace tallowbay::test
