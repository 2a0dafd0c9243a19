#include "platform/headless/VirtualTime.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

namespace tallowbay::headless {
namespace {

using namespace std::chrono_literals;

class VirtualDispatchTest : public testing::Test {
protected:
    // A task that notes on which side of the main queue it ran.
    Task noting()
    {
        return [this] { ranOnMain = dispatch.onMainQueue(); };
    }

    VirtualClock clock;
    VirtualDispatch dispatch{clock};
    std::optional<bool> ranOnMain;
};

TEST(VirtualClockTest, LeavesTheMonotonicTimeAloneWhenTheWallIsSet)
{
    VirtualClock clock;
    const auto before = clock.monotonicNow();
    clock.setWall(clock.wallNow() + 24h);
    EXPECT_EQ(clock.monotonicNow(), before);
    clock.setWall(clock.wallNow() - 48h);
    EXPECT_EQ(clock.monotonicNow(), before);
}

TEST_F(VirtualDispatchTest, TheTestItselfIsOnTheMainQueue)
{
    EXPECT_TRUE(dispatch.onMainQueue());
}

TEST_F(VirtualDispatchTest, RunsTasksAndTimersOfTheMainQueueOnIt)
{
    dispatch.mainAsync(noting());
    dispatch.runMain();
    EXPECT_EQ(ranOnMain, true);

    ranOnMain.reset();
    dispatch.mainAfter(1ms, noting());
    dispatch.advance(1ms);
    EXPECT_EQ(ranOnMain, true);

    ranOnMain.reset();
    const auto token = dispatch.repeatEvery(1ms, noting());
    dispatch.advance(1ms);
    EXPECT_EQ(ranOnMain, true);
}

TEST_F(VirtualDispatchTest, TicksOnTimeHoweverOften)
{
    std::vector<std::chrono::nanoseconds> ticks;
    const auto start = clock.monotonicNow();
    const auto token =
        dispatch.repeatEvery(10ms, [&] { ticks.push_back(clock.monotonicNow() - start); });
    dispatch.advance(39ms);
    EXPECT_EQ(ticks, (std::vector<std::chrono::nanoseconds>{10ms, 20ms, 30ms}));
}

TEST_F(VirtualDispatchTest, NoticesACallOutOfABackgroundJob)
{
    dispatch.globalAsync(QualityOfService::userInitiated, noting());
    dispatch.runUntilIdle();
    EXPECT_EQ(ranOnMain, false);
    EXPECT_TRUE(dispatch.onMainQueue());
}

TEST_F(VirtualDispatchTest, LetsBackgroundJobsBeQuickerThanTheMainQueue)
{
    dispatch.runBackgroundAtOnce();
    dispatch.mainAsync([&] { EXPECT_EQ(ranOnMain, false); });
    dispatch.globalAsync(QualityOfService::userInitiated, noting());
    EXPECT_EQ(ranOnMain, false);
    EXPECT_TRUE(dispatch.onMainQueue());
    dispatch.runMain();
}

TEST_F(VirtualDispatchTest, NoticesACallOutOfASerialQueue)
{
    const auto queue = dispatch.makeSerialQueue("serial");
    queue->async(noting());
    dispatch.runUntilIdle();
    EXPECT_EQ(ranOnMain, false);
}

TEST_F(VirtualDispatchTest, ReturnsToTheMainQueueWithTheResultOfABackgroundJob)
{
    dispatch.globalAsync(
        QualityOfService::userInteractive, [this] { dispatch.mainAsync(noting()); });
    dispatch.runUntilIdle();
    EXPECT_EQ(ranOnMain, true);
}

TEST_F(VirtualDispatchTest, RunsAsTheMainQueueWhatAnUnderwayJobLetsItRun)
{
    dispatch.globalAsync(QualityOfService::userInitiated, [this] {
        dispatch.mainAsync(noting());
        dispatch.runMain();
        EXPECT_FALSE(dispatch.onMainQueue());
    });
    dispatch.runUntilIdle();
    EXPECT_EQ(ranOnMain, true);
}

TEST_F(VirtualDispatchTest, IsBackOnTheMainQueueAfterAJobThatThrows)
{
    dispatch.globalAsync(
        QualityOfService::userInitiated, [] { throw std::runtime_error("out of the job"); });
    EXPECT_THROW(dispatch.runUntilIdle(), std::runtime_error);
    EXPECT_TRUE(dispatch.onMainQueue());
}

} // namespace
} // namespace tallowbay::headless
