#include "ui/TallowLogo.h"

#include "platform/headless/RecordingGraphics.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

// A mark of 512 x 512 points, or of half that, whose random numbers a test sets.
class TallowLogoTest : public testing::Test {
protected:
    double blinkAt(std::chrono::milliseconds time)
    {
        logo.tick(start + time, size, std::nullopt);
        return logo.blinkProgress();
    }
    Point gazeAt(std::optional<Point> mouse) // after it has come to rest
    {
        for (int tick = 0; tick < 400; ++tick)
            logo.tick(start, size, mouse);
        return logo.eyeOffset();
    }
    std::vector<std::string> drawn()
    {
        headless::RecordingGraphics context;
        logo.draw(context, size);
        return context.lines;
    }

    const MonotonicTime start{100s};
    double chance = 0;
    Size size{512, 512};
    const double eyeLine = 292;
    TallowLogo logo{start, [this] { return chance; }, std::make_shared<Bitmap>(PixelSize{2, 2})};
};

TEST_F(TallowLogoTest, KeepsItsEyesOpenAtFirst)
{
    EXPECT_EQ(blinkAt(1799ms), 0);
}

TEST_F(TallowLogoTest, WaitsForItsFirstBlinkAsLongAsChanceWants)
{
    chance = 1;
    TallowLogo late{start, [this] { return chance; }, nullptr};
    late.tick(start + 3799ms, size, std::nullopt);
    late.tick(start + 3800ms, size, std::nullopt);
    late.tick(start + 3900ms, size, std::nullopt);
    EXPECT_NEAR(late.blinkProgress(), 0.1 / 0.28, 1e-9);
}

TEST_F(TallowLogoTest, ClosesFastAndOpensSlowly)
{
    EXPECT_EQ(blinkAt(1800ms), 0);
    EXPECT_NEAR(blinkAt(1940ms), 0.5, 1e-9);
    EXPECT_NEAR(blinkAt(2080ms), 1, 1e-9);
    EXPECT_NEAR(blinkAt(2290ms), 0.5, 1e-9);
    EXPECT_NEAR(blinkAt(2499ms), 1.0 / 420, 1e-6);
    EXPECT_EQ(blinkAt(2500ms), 0);
}

TEST_F(TallowLogoTest, BlinksAgainAfterAPauseAsLongAsChanceWants)
{
    blinkAt(1800ms);
    chance = 0.5;
    blinkAt(2500ms); // 2.5 s + 1.75 s from here
    EXPECT_EQ(blinkAt(6749ms), 0);
    EXPECT_EQ(blinkAt(6750ms), 0) << "it begins here";
    EXPECT_NEAR(blinkAt(6890ms), 0.5, 1e-9);
}

TEST_F(TallowLogoTest, EasesTheLid)
{
    EXPECT_EQ(easedBlink(0), 0);
    EXPECT_NEAR(easedBlink(0.25), 0.125, 1e-9);
    EXPECT_NEAR(easedBlink(0.5), 0.5, 1e-9);
    EXPECT_NEAR(easedBlink(0.75), 0.875, 1e-9);
    EXPECT_EQ(easedBlink(1), 1);
}

TEST_F(TallowLogoTest, LooksStraightAheadAtTheMiddleOfItsEyes)
{
    gazeAt(Point{500, 500});
    const Point offset = gazeAt(Point{245, eyeLine});
    EXPECT_NEAR(offset.x, 0, 1e-9);
    EXPECT_NEAR(offset.y, 0, 1e-9);
}

TEST_F(TallowLogoTest, LooksAsideNoFurtherThanItCan)
{
    EXPECT_NEAR(gazeAt(Point{245 + 280, eyeLine}).x, 7 * 0.55, 1e-9);
    EXPECT_NEAR(gazeAt(Point{245 + 5000, eyeLine}).x, 7 * 0.55, 1e-9);
    EXPECT_NEAR(gazeAt(Point{245, eyeLine - 5000}).y, -9 * 0.45, 1e-9);
    EXPECT_NEAR(gazeAt(Point{245 + 140, eyeLine}).x, 7 * 0.55 / 2, 1e-9);
    const Point diagonal = gazeAt(Point{245 + 300, eyeLine + 400});
    EXPECT_NEAR(diagonal.x, 7 * 0.55 * 0.6, 1e-9);
    EXPECT_NEAR(diagonal.y, 9 * 0.45 * 0.8, 1e-9);
}

TEST_F(TallowLogoTest, LooksStraightAheadWithoutAMouse)
{
    gazeAt(Point{5000, 5000});
    const Point offset = gazeAt(std::nullopt);
    EXPECT_NEAR(offset.x, 0, 1e-9);
    EXPECT_NEAR(offset.y, 0, 1e-9);
}

TEST_F(TallowLogoTest, TurnsItsGazeATenthOfTheWayAtATime)
{
    logo.tick(start, size, Point{245 + 280, eyeLine});
    EXPECT_NEAR(logo.eyeOffset().x, 7 * 0.55 * 0.1, 1e-9);
    logo.tick(start, size, Point{245 + 280, eyeLine});
    EXPECT_NEAR(logo.eyeOffset().x, 7 * 0.55 * 0.19, 1e-9);
}

TEST_F(TallowLogoTest, LooksAsideByItsWidthInBothDirections)
{
    size = {256, 512};
    EXPECT_NEAR(gazeAt(Point{122.5 + 5000, eyeLine}).x, 3.5 * 0.55, 1e-9);
    EXPECT_NEAR(gazeAt(Point{122.5, eyeLine + 5000}).y, 4.5 * 0.45, 1e-9);
}

TEST_F(TallowLogoTest, DrawsTheIconAndTwoOpenEyes)
{
    EXPECT_THAT(
        drawn(),
        ElementsAre(
            "image 2x2 rect(0 0 512 512)",
            "fill oval(201 274 28 36) color(0.862745 0.854902 1 0.75)",
            "fill oval(208 283 14 18) color(0.117647 0.105882 0.294118 1)",
            "fill oval(261 274 28 36) color(0.862745 0.854902 1 0.75)",
            "fill oval(268 283 14 18) color(0.117647 0.105882 0.294118 1)"));
}

TEST_F(TallowLogoTest, DrawsEyesAsWideAsItsWidthAndAsHighAsItsHeight)
{
    size = {256, 512};
    EXPECT_THAT(drawn().at(1), StartsWith("fill oval(100.5 274 14 36)"));
    EXPECT_THAT(drawn().at(2), StartsWith("fill oval(104 283 7 18)"));
}

TEST_F(TallowLogoTest, DrawsLidsThatHangDownOverTheEyes)
{
    blinkAt(1800ms);
    blinkAt(1940ms); // half-way: 19 of 36 points
    ASSERT_EQ(drawn().size(), 7u);
    EXPECT_THAT(drawn().at(3), StartsWith("fill polygon(228.978 291, "));
    EXPECT_THAT(drawn().at(3), HasSubstr(", 215 310, ")) << "up to the top of the eye";
    EXPECT_THAT(drawn().at(3), HasSubstr(", 201.022 291) color(0.356863 0.372549 1 0.92)"));
}

} // namespace
} // namespace tallowbay
