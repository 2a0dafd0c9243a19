#pragma once

#include "platform/Clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

namespace tallowbay::contract {

// Every clock keeps its header's promises. A backend offers:
//   const Clock& clock();
//   void pass(std::chrono::milliseconds);   lets that much time go by
//   WallTime dateOfNewFile();               of a file that is written in this moment
template <typename Backend> class ClockContract : public testing::Test {
protected:
    Backend backend;
    const Clock& clock = backend.clock();
};

TYPED_TEST_SUITE_P(ClockContract);

TYPED_TEST_P(ClockContract, BothTimesGoOnAsTimePasses)
{
    using namespace std::chrono_literals;
    const auto monotonic = this->clock.monotonicNow();
    const auto wall = this->clock.wallNow();
    this->backend.pass(5ms);
    EXPECT_GE(this->clock.monotonicNow() - monotonic, 5ms);
    EXPECT_GT(this->clock.wallNow(), wall);
}

TYPED_TEST_P(ClockContract, NeitherTimeRunsAhead)
{
    using namespace std::chrono_literals;
    const auto monotonic = this->clock.monotonicNow();
    const auto wall = this->clock.wallNow();
    this->backend.pass(1ms);
    EXPECT_LT(this->clock.monotonicNow() - monotonic, 10s);
    EXPECT_LT(this->clock.wallNow() - wall, 10s);
}

TYPED_TEST_P(ClockContract, TheMonotonicTimeNeverRunsBackwards)
{
    auto before = this->clock.monotonicNow();
    for (int i = 0; i < 10'000; ++i) {
        const auto now = this->clock.monotonicNow();
        ASSERT_GE(now, before);
        before = now;
    }
}

TYPED_TEST_P(ClockContract, TheMonotonicTimeNeverRunsBackwardsFromOneThreadToTheNext)
{
    std::vector<MonotonicTime> times{this->clock.monotonicNow()};
    for (int i = 0; i < 20; ++i)
        std::thread([&] { times.push_back(this->clock.monotonicNow()); }).join();
    EXPECT_TRUE(std::ranges::is_sorted(times));
}

// File systems count in ticks, and give a file the tick that has begun.
TYPED_TEST_P(ClockContract, TheWallTimeIsThatOfNewFiles)
{
    using namespace std::chrono_literals;
    const auto before = this->clock.wallNow();
    const auto date = this->backend.dateOfNewFile();
    EXPECT_GE(date, before - 2s);
    EXPECT_LE(date, this->clock.wallNow());
}

REGISTER_TYPED_TEST_SUITE_P(
    ClockContract, BothTimesGoOnAsTimePasses, NeitherTimeRunsAhead,
    TheMonotonicTimeNeverRunsBackwards, TheMonotonicTimeNeverRunsBackwardsFromOneThreadToTheNext,
    TheWallTimeIsThatOfNewFiles);

} // namespace tallowbay::contract
