#pragma once

#include "platform/Clock.h"
#include "platform/Dispatch.h"

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <utility>

namespace tallowbay::headless {

// Time that stands still until a test moves it. Wall-clock time can jump by itself.
class VirtualClock final : public Clock {
public:
    WallTime wallNow() const override { return wall; }
    MonotonicTime monotonicNow() const override { return monotonic; }

    void setWall(WallTime now) { wall = now; }
    void move(std::chrono::nanoseconds by);

private:
    // 2026-01-05 10:31:12 UTC
    WallTime wall = WallTime(std::chrono::seconds(1767609072));
    MonotonicTime monotonic{};
};

// Queues without threads: everything runs inside the calls of the test, in an order that the test
// chooses. Main and serial queues run whenever the test runs anything; a background job waits until
// the test picks it. Each task knows on which side of the main queue it runs.
class VirtualDispatch final : public Dispatch {
public:
    explicit VirtualDispatch(VirtualClock& clock)
        : clock(clock)
    {
    }

    void mainAsync(Task) override;
    void mainAfter(std::chrono::milliseconds delay, Task) override;
    Subscription repeatEvery(std::chrono::milliseconds interval, Task) override;
    void globalAsync(QualityOfService, Task) override;
    // Runs background jobs in their order. One that never ends is played by a job that moves time.
    bool waitForBackground(
        const std::function<bool()>& condition, std::chrono::milliseconds limit) override;
    std::unique_ptr<SerialQueue> makeSerialQueue(std::string_view label) override;

    // Runs the main and serial queues until both are empty.
    void runMain();

    // Runs one waiting background job, by its place in the queue, and then the main queue.
    void runBackground(std::size_t index = 0);
    std::size_t backgroundCount() const { return background.size(); }
    QualityOfService backgroundQuality(std::size_t index) const
    {
        return background.at(index).first;
    }

    // From now on a background job runs as soon as it is given, as on a thread that is quicker than
    // the main queue.
    void runBackgroundAtOnce() { backgroundAtOnce = true; }

    // Runs every queue until all are empty, background jobs in their order; time stands still.
    void runUntilIdle();

    // Moves both clocks and runs what falls due on the way, each thing at its own time.
    void advance(std::chrono::milliseconds by);

    // Whether what runs now runs on the main queue, as the test itself does. A result that a
    // background job or a task of a serial queue hands over by a plain call arrives where this is
    // false.
    bool onMainQueue() const { return onMain; }

    // Timers that are waiting, repeating or not.
    std::size_t timerCount() const { return timers.size(); }

private:
    struct Timer {
        std::shared_ptr<Task> task;
        std::chrono::milliseconds interval{0}; // zero: once
    };
    using TimerKey = std::pair<MonotonicTime, std::uint64_t>;

    class Serial;

    TimerKey schedule(MonotonicTime due, Timer);
    void run(const Task&, bool asMain);
    void runJob(std::size_t index);
    void fireNextTimer();

    VirtualClock& clock;
    std::deque<Task> mainQueue;
    std::deque<std::pair<QualityOfService, Task>> background;
    std::map<TimerKey, Timer> timers;
    std::uint64_t lastTimer = 0;
    bool onMain = true;
    bool backgroundAtOnce = false;
};

} // namespace tallowbay::headless
