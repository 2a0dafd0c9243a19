#include "support/LoopDispatch.h"

#include "platform/contract/DispatchContract.h"

namespace tallowbay::test {

namespace {

using namespace std::chrono_literals;

struct LoopBackend {
    LoopDispatch loop;

    Dispatch& dispatch() { return loop; }
    MonotonicTime now() { return std::chrono::steady_clock::now(); }
    void pass(std::chrono::milliseconds time)
    {
        loop.runUntil([] { return false; }, time);
    }
    bool runUntil(const std::function<bool()>& condition) { return loop.runUntil(condition, 30s); }
};

} // namespace

} // namespace tallowbay::test

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Loop, DispatchContract, test::LoopBackend);
}

namespace tallowbay::test {

TEST(LoopDispatchTest, RunsNoTaskWhenTheConditionHoldsFromTheStart)
{
    LoopDispatch loop;
    bool ran = false;
    loop.mainAsync([&] { ran = true; });
    EXPECT_TRUE(loop.runUntil([] { return true; }, 30s));
    EXPECT_FALSE(ran);
}

TEST(LoopDispatchTest, GivesUpAtTheLimit)
{
    LoopDispatch loop;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(loop.runUntil([] { return false; }, 20ms));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 20ms);
}

TEST(LoopDispatchTest, GivesUpAtTheLimitAlsoWhenTasksNeverEnd)
{
    LoopDispatch loop;
    std::function<void()> again = [&] { loop.mainAsync([&] { again(); }); };
    again();
    EXPECT_FALSE(loop.runUntil([] { return false; }, 20ms));
}

TEST(LoopDispatchTest, DoesNotMakeUpForALateTick)
{
    LoopDispatch loop;
    std::vector<MonotonicTime> ticks;
    const auto token =
        loop.repeatEvery(40ms, [&] { ticks.push_back(std::chrono::steady_clock::now()); });
    std::this_thread::sleep_for(130ms);
    EXPECT_TRUE(loop.runUntil([&] { return ticks.size() == 2; }, 30s));
    EXPECT_GE(ticks.at(1) - ticks.at(0), 40ms);
}

TEST(LoopDispatchTest, TokensMayOutliveTheirDispatch)
{
    auto loop = std::make_unique<LoopDispatch>();
    const auto token = loop->repeatEvery(1ms, [] {});
    loop.reset();
}

} // namespace tallowbay::test
