#include "editor/CanvasSession.h"

#include <gtest/gtest.h>

#include <random>

namespace tallowbay::test {
namespace {

class CanvasPropertyTest : public testing::TestWithParam<unsigned> { };

TEST_P(CanvasPropertyTest, HoldsThroughTenThousandRandomSteps)
{
    std::mt19937 random(GetParam());
    const auto choose = [&](std::uint32_t bound) {
        return static_cast<std::uint32_t>(random()) % bound;
    };
    CanvasSession session;
    for (int step = 0; step < 10'000; ++step) {
        session.step(choose);
        ASSERT_EQ(session.violation(choose), "") << "step " << step;
    }
    EXPECT_GT(session.tally.added, 100);
    EXPECT_GT(session.tally.moved, 100);
    EXPECT_GT(session.tally.deleted, 10);
    EXPECT_GT(session.tally.undone, 100);
    EXPECT_GT(session.tally.redone, 100);
    EXPECT_GT(session.tally.switched, 10);
    EXPECT_GT(session.tally.resized, 10);
}
INSTANTIATE_TEST_SUITE_P(Seeds, CanvasPropertyTest, testing::Values(1u, 2u, 3u, 4u, 5u));

} // namespace
} // namespace tallowbay::test
