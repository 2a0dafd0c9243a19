#pragma once

#include "platform/Clock.h"
#include "platform/Dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <vector>

namespace tallowbay::contract {

// Every dispatch keeps its header's promises. A backend offers:
//   Dispatch& dispatch();
//   MonotonicTime now();                     the time that its timers go by
//   void pass(std::chrono::milliseconds);    runs the main queue for that long
//   bool runUntil(condition);                runs all queues until it holds; false after long
template <typename Backend> class DispatchContract : public testing::Test {
protected:
    Backend backend;
    Dispatch& dispatch = backend.dispatch();
    std::vector<int> order;
};

TYPED_TEST_SUITE_P(DispatchContract);

TYPED_TEST_P(DispatchContract, RunsMainTasksInTheOrderTheyWereGiven)
{
    for (int i = 0; i < 5; ++i)
        this->dispatch.mainAsync([this, i] { this->order.push_back(i); });
    EXPECT_TRUE(this->backend.runUntil([this] { return this->order.size() == 5; }));
    EXPECT_EQ(this->order, (std::vector{0, 1, 2, 3, 4}));
}

TYPED_TEST_P(DispatchContract, NeverRunsATaskInsideTheCallThatGaveIt)
{
    this->dispatch.mainAsync([this] {
        this->dispatch.mainAsync([this] { this->order.push_back(2); });
        this->order.push_back(1);
    });
    EXPECT_TRUE(this->order.empty());
    EXPECT_TRUE(this->backend.runUntil([this] { return this->order.size() == 2; }));
    EXPECT_EQ(this->order, (std::vector{1, 2}));
}

TYPED_TEST_P(DispatchContract, RunsADelayedTaskNotBeforeItsTime)
{
    using namespace std::chrono_literals;
    const auto start = this->backend.now();
    auto ranAt = start;
    this->dispatch.mainAfter(30ms, [&] { ranAt = this->backend.now(); });
    EXPECT_TRUE(this->backend.runUntil([&] { return ranAt != start; }));
    EXPECT_GE(ranAt - start, 30ms);
}

TYPED_TEST_P(DispatchContract, RunsDelayedTasksInTheOrderOfTheirTimes)
{
    using namespace std::chrono_literals;
    this->dispatch.mainAfter(60ms, [this] { this->order.push_back(60); });
    this->dispatch.mainAfter(20ms, [this] { this->order.push_back(20); });
    this->dispatch.mainAfter(0ms, [this] { this->order.push_back(0); });
    EXPECT_TRUE(this->backend.runUntil([this] { return this->order.size() == 3; }));
    EXPECT_EQ(this->order, (std::vector{0, 20, 60}));
}

TYPED_TEST_P(DispatchContract, RepeatsFirstAfterOneInterval)
{
    using namespace std::chrono_literals;
    const auto start = this->backend.now();
    std::vector<MonotonicTime> ticks;
    const auto token =
        this->dispatch.repeatEvery(20ms, [&] { ticks.push_back(this->backend.now()); });
    EXPECT_TRUE(this->backend.runUntil([&] { return ticks.size() == 3; }));
    EXPECT_GE(ticks.at(0) - start, 20ms);
    EXPECT_GE(ticks.at(2) - start, 60ms);
}

TYPED_TEST_P(DispatchContract, TicksNoMoreOnceTheTokenHasEnded)
{
    using namespace std::chrono_literals;
    int ticks = 0;
    auto token = this->dispatch.repeatEvery(5ms, [&] { ++ticks; });
    EXPECT_TRUE(this->backend.runUntil([&] { return ticks > 0; }));
    token.reset();
    const int ticksAtTheEnd = ticks;
    this->backend.pass(50ms);
    EXPECT_EQ(ticks, ticksAtTheEnd);
}

TYPED_TEST_P(DispatchContract, LetsATokenEndInsideItsOwnTask)
{
    using namespace std::chrono_literals;
    auto ticks = std::make_shared<int>(0);
    const std::weak_ptr watched = ticks;
    Subscription token;
    token = this->dispatch.repeatEvery(5ms, [&token, ticks = std::move(ticks)] {
        token.reset();
        ++*ticks;
    });
    EXPECT_TRUE(this->backend.runUntil([&] { return watched.expired(); }))
        << "the task is kept after its end";
    this->backend.pass(30ms);
}

TYPED_TEST_P(DispatchContract, HandsAResultFromTheBackgroundToTheMainQueue)
{
    for (const auto quality : {QualityOfService::userInteractive, QualityOfService::userInitiated})
        this->dispatch.globalAsync(
            quality, [this] { this->dispatch.mainAsync([this] { this->order.push_back(1); }); });
    EXPECT_TRUE(this->order.empty());
    EXPECT_TRUE(this->backend.runUntil([this] { return this->order.size() == 2; }));
}

TYPED_TEST_P(DispatchContract, WaitsForWhatBackgroundTasksBringAbout)
{
    using namespace std::chrono_literals;
    std::atomic<int> ended = 0;
    const auto start = this->backend.now();
    for (int i = 0; i < 20; ++i)
        this->dispatch.globalAsync(QualityOfService::userInitiated, [&] {
            this->dispatch.mainAsync([this] { this->order.push_back(1); });
            ++ended;
        });
    EXPECT_TRUE(this->dispatch.waitForBackground([&] { return ended == 20; }, 60s));
    EXPECT_LT(this->backend.now() - start, 60s);
    EXPECT_TRUE(this->order.empty()) << "the main queue does not run meanwhile";
    EXPECT_TRUE(this->backend.runUntil([this] { return this->order.size() == 20; }));
}

TYPED_TEST_P(DispatchContract, WaitsNoLongerThanTheLimit)
{
    using namespace std::chrono_literals;
    const auto start = this->backend.now();
    EXPECT_TRUE(this->dispatch.waitForBackground([] { return true; }, 60s));
    this->dispatch.globalAsync(QualityOfService::userInitiated, [] {});
    EXPECT_FALSE(this->dispatch.waitForBackground([] { return false; }, 30ms));
    EXPECT_GE(this->backend.now() - start, 30ms);
    EXPECT_LT(this->backend.now() - start, 60s);
}

TYPED_TEST_P(DispatchContract, RunsTheTasksOfASerialQueueInOrder)
{
    std::atomic<int> done = 0;
    const auto queue = this->dispatch.makeSerialQueue("com.quarnel.tallowbay.contract");
    for (int i = 0; i < 100; ++i)
        queue->async([&, i] {
            this->order.push_back(i);
            ++done;
        });
    EXPECT_TRUE(this->backend.runUntil([&] { return done == 100; }));
    EXPECT_TRUE(std::ranges::is_sorted(this->order));
}

TYPED_TEST_P(DispatchContract, RunsNothingOfASerialQueueThatIsGone)
{
    using namespace std::chrono_literals;
    std::atomic<int> ran = 0;
    auto queue = this->dispatch.makeSerialQueue("com.quarnel.tallowbay.contract");
    for (int i = 0; i < 100; ++i)
        queue->async([&] { ++ran; });
    queue.reset();
    const int ranAtTheEnd = ran;
    this->backend.pass(20ms);
    EXPECT_EQ(ran, ranAtTheEnd);
}

REGISTER_TYPED_TEST_SUITE_P(
    DispatchContract, RunsMainTasksInTheOrderTheyWereGiven, NeverRunsATaskInsideTheCallThatGaveIt,
    RunsADelayedTaskNotBeforeItsTime, RunsDelayedTasksInTheOrderOfTheirTimes,
    RepeatsFirstAfterOneInterval, TicksNoMoreOnceTheTokenHasEnded, LetsATokenEndInsideItsOwnTask,
    HandsAResultFromTheBackgroundToTheMainQueue, WaitsForWhatBackgroundTasksBringAbout,
    WaitsNoLongerThanTheLimit, RunsTheTasksOfASerialQueueInOrder,
    RunsNothingOfASerialQueueThatIsGone);

} // namespace tallowbay::contract
