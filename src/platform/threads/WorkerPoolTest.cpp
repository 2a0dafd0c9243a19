#include "platform/threads/WorkerPool.h"

#include "platform/threads/ThreadSerialQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>

namespace tallowbay::threads {

namespace {

using namespace std::chrono_literals;

// Holds back the tasks that pass through it.
class Gate {
public:
    void open() { opened.set_value(); }
    void pass() const { whenOpen.wait(); }

private:
    std::promise<void> opened;
    std::shared_future<void> whenOpen = opened.get_future().share();
};

TEST(WorkerPoolTest, RunsAsManyTasksAtOnceAsItHasThreads)
{
    Gate gate;
    std::atomic<int> inside = 0;
    std::promise<void> allInside;
    WorkerPool pool("test", 3);
    for (int i = 0; i < 3; ++i)
        pool.async([&] {
            if (++inside == 3)
                allInside.set_value();
            gate.pass();
        });
    EXPECT_EQ(allInside.get_future().wait_for(30s), std::future_status::ready);
    gate.open();
}

TEST(WorkerPoolTest, RunsNoMoreAtOnceThanItsLimit)
{
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::atomic<int> left = 50;
    std::promise<void> done;
    WorkerPool pool("test", 2);
    for (int i = 0; i < 50; ++i)
        pool.async([&] {
            const int now = ++inside;
            for (int seen = most; seen < now && !most.compare_exchange_weak(seen, now);) { }
            std::this_thread::sleep_for(1ms);
            --inside;
            if (--left == 0)
                done.set_value();
        });
    EXPECT_EQ(done.get_future().wait_for(30s), std::future_status::ready);
    EXPECT_EQ(most, 2);
}

TEST(WorkerPoolTest, WaitsAtItsEndForTheTaskThatRuns)
{
    std::atomic<bool> finished = false;
    {
        std::promise<void> started;
        WorkerPool pool("test", 1);
        pool.async([&] {
            started.set_value();
            std::this_thread::sleep_for(20ms);
            finished = true;
        });
        started.get_future().wait();
    }
    EXPECT_TRUE(finished);
}

TEST(WorkerPoolTest, DropsAtItsEndWhatHasNotStarted)
{
    Gate gate;
    std::atomic<bool> ran = false;
    std::promise<void> started;
    const auto held = std::make_shared<int>();
    auto pool = std::make_unique<WorkerPool>("test", 1);
    pool->async([&] {
        started.set_value();
        gate.pass();
    });
    started.get_future().wait();
    pool->async([&ran, held] { ran = true; });
    std::thread opener([&] {
        while (held.use_count() > 1)
            std::this_thread::yield();
        gate.open();
    });
    pool.reset();
    opener.join();
    EXPECT_FALSE(ran);
}

TEST(WorkerPoolTest, LetsADroppedTaskGiveANewOneToThePool)
{
    Gate gate;
    std::promise<void> started;
    auto pool = std::make_unique<WorkerPool>("test", 1);
    pool->async([&] {
        started.set_value();
        gate.pass();
    });
    started.get_future().wait();
    std::shared_ptr<int> lastWords(new int, [&, raw = pool.get()](int* value) {
        delete value;
        raw->async([] { FAIL() << "given to a pool that ends"; });
        gate.open();
    });
    pool->async([lastWords] { FAIL() << "should have been dropped"; });
    lastWords.reset();
    pool.reset();
}

TEST(ThreadSerialQueueTest, RunsOneTaskAtATime)
{
    std::atomic<int> inside = 0;
    std::promise<bool> alone;
    ThreadSerialQueue queue("com.quarnel.tallowbay.test");
    queue.async([&] {
        ++inside;
        std::this_thread::sleep_for(10ms);
        --inside;
    });
    queue.async([&] { alone.set_value(inside == 0); });
    EXPECT_TRUE(alone.get_future().get());
}

} // namespace

} // namespace tallowbay::threads
