#include "platform/headless/VirtualTime.h"

#include <utility>

namespace tallowbay::headless {

void VirtualClock::move(std::chrono::nanoseconds by)
{
    wall += std::chrono::duration_cast<WallTime::duration>(by);
    monotonic += std::chrono::duration_cast<MonotonicTime::duration>(by);
}

// Shares the main queue's turn: what it is given runs in order between the main queue's tasks,
// which is one of the orders that a queue with a thread of its own may show.
class VirtualDispatch::Serial final : public SerialQueue {
public:
    explicit Serial(VirtualDispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    void async(Task task) override
    {
        dispatch.mainAsync([this, alive = std::weak_ptr<char>(token), task = std::move(task)] {
            if (!alive.expired())
                dispatch.run(task, false);
        });
    }

private:
    VirtualDispatch& dispatch;
    std::shared_ptr<char> token = std::make_shared<char>();
};

void VirtualDispatch::mainAsync(Task task)
{
    mainQueue.push_back(std::move(task));
}

VirtualDispatch::TimerKey VirtualDispatch::schedule(MonotonicTime due, Timer timer)
{
    const TimerKey key{due, ++lastTimer};
    timers.emplace(key, std::move(timer));
    return key;
}

void VirtualDispatch::mainAfter(std::chrono::milliseconds delay, Task task)
{
    schedule(clock.monotonicNow() + delay, {std::make_shared<Task>(std::move(task))});
}

Subscription VirtualDispatch::repeatEvery(std::chrono::milliseconds interval, Task task)
{
    auto shared = std::make_shared<Task>(std::move(task));
    schedule(clock.monotonicNow() + interval, {shared, interval});
    return Subscription([this, shared] {
        std::erase_if(timers, [&](const auto& entry) { return entry.second.task == shared; });
    });
}

void VirtualDispatch::globalAsync(QualityOfService quality, Task task)
{
    if (backgroundAtOnce)
        run(task, false);
    else
        background.emplace_back(quality, std::move(task));
}

std::unique_ptr<SerialQueue> VirtualDispatch::makeSerialQueue(std::string_view)
{
    return std::make_unique<Serial>(*this);
}

void VirtualDispatch::run(const Task& task, bool asMain)
{
    struct Restored {
        bool& value;
        const bool before;
        ~Restored() { value = before; }
    } restored{onMain, onMain};
    onMain = asMain;
    task();
}

void VirtualDispatch::runMain()
{
    while (!mainQueue.empty()) {
        const Task task = std::move(mainQueue.front());
        mainQueue.pop_front();
        run(task, true);
    }
}

void VirtualDispatch::runJob(std::size_t index)
{
    const auto chosen = background.begin() + static_cast<std::ptrdiff_t>(index);
    const Task task = std::move(chosen->second);
    background.erase(chosen);
    run(task, false);
}

void VirtualDispatch::runBackground(std::size_t index)
{
    runJob(index);
    runMain();
}

bool VirtualDispatch::waitForBackground(
    const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const auto end = clock.monotonicNow() + limit;
    while (!condition()) {
        if (background.empty())
            clock.move(end - clock.monotonicNow());
        if (clock.monotonicNow() >= end)
            return false;
        runJob(0);
    }
    return true;
}

void VirtualDispatch::runUntilIdle()
{
    runMain();
    while (!background.empty())
        runBackground();
}

void VirtualDispatch::fireNextTimer()
{
    const auto [key, timer] = *timers.begin();
    timers.erase(timers.begin());
    if (key.first > clock.monotonicNow()) // time may have gone on while the main queue waited
        clock.move(key.first - clock.monotonicNow());
    if (timer.interval > std::chrono::milliseconds::zero())
        schedule(key.first + timer.interval, timer);
    run(*timer.task, true);
    runMain();
}

void VirtualDispatch::advance(std::chrono::milliseconds by)
{
    runMain();
    const auto end = clock.monotonicNow() + by;
    while (!timers.empty() && timers.begin()->first.first <= end)
        fireNextTimer();
    clock.move(end - clock.monotonicNow());
}

} // namespace tallowbay::headless
