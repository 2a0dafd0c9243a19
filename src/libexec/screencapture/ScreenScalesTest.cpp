#include "libexec/screencapture/ScreenScales.h"

#include <gtest/gtest.h>

namespace tallowbay::screencapture {

namespace {

TEST(ScreenScales, FollowTheDotsPerInchWhereNothingIsSet)
{
    EXPECT_DOUBLE_EQ(ScreenScales("", "").of("DP-1", 0, 96), 1);
    EXPECT_DOUBLE_EQ(ScreenScales("", "").of("DP-1", 0, 144), 1.5);
}

TEST(ScreenScales, AreMultipliedByTheFactorForAll)
{
    EXPECT_DOUBLE_EQ(ScreenScales("2", "").of("DP-1", 0, 96), 2);
    EXPECT_DOUBLE_EQ(ScreenScales("2", "").of("DP-1", 0, 144), 3);
}

TEST(ScreenScales, AreReadByName)
{
    const ScreenScales scales("", "HDMI-1=1.5;DP-1=2");
    EXPECT_DOUBLE_EQ(scales.of("DP-1", 0, 96), 2);
    EXPECT_DOUBLE_EQ(scales.of("HDMI-1", 1, 96), 1.5);
    EXPECT_DOUBLE_EQ(scales.of("VGA-1", 2, 96), 1);
}

TEST(ScreenScales, AreReadByPlaceWhereTheListHasNoNames)
{
    const ScreenScales scales("", "1;1.5");
    EXPECT_DOUBLE_EQ(scales.of("DP-1", 0, 96), 1);
    EXPECT_DOUBLE_EQ(scales.of("HDMI-1", 1, 96), 1.5);
}

TEST(ScreenScales, ReplaceTheDotsPerInchOfTheirScreen)
{
    EXPECT_DOUBLE_EQ(ScreenScales("", "DP-1=1.5").of("DP-1", 0, 192), 1.5);
}

TEST(ScreenScales, IgnoreWhatIsNoFactor)
{
    EXPECT_DOUBLE_EQ(ScreenScales("large", "DP-1=;-1;=").of("DP-1", 0, 96), 1);
    EXPECT_DOUBLE_EQ(ScreenScales("0", "").of("DP-1", 0, 96), 1);
}

TEST(ScreenScales, NeverMakeThingsSmaller)
{
    EXPECT_DOUBLE_EQ(ScreenScales("0.5", "").of("DP-1", 0, 96), 1);
    EXPECT_DOUBLE_EQ(ScreenScales("", "").of("DP-1", 0, 72), 1);
}

} // namespace

} // namespace tallowbay::screencapture
