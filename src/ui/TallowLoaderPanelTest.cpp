#include "ui/TallowLoaderPanel.h"

#include "platform/headless/HeadlessScreens.h"
#include "platform/headless/VirtualTime.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class TallowLoaderPanelTest : public testing::Test {
protected:
    Point placeWithMouseAt(std::optional<Point> mouse)
    {
        screens.mouse = mouse;
        panel->centerOnActiveScreen();
        return record().origin;
    }
    headless::LoaderRecord& record() { return *views.loaders.back(); }

    headless::VirtualClock clock;
    headless::VirtualDispatch dispatch{clock};
    headless::HeadlessViews views{dispatch};
    headless::HeadlessScreens screens; // 1920 x 1080
    std::unique_ptr<TallowLoaderPanel> panel = std::make_unique<TallowLoaderPanel>(screens, views);
};

TEST_F(TallowLoaderPanelTest, AppearsOnTheScreenUnderThePointer)
{
    screens.others = {{{1920, -120}, {1280, 1200}}, {{-800, 0}, {800, 600}}};
    EXPECT_EQ(placeWithMouseAt(Point{2000, 0}), (Point{1920 + 640 - 44, -120 + 600 - 44}));
    EXPECT_EQ(placeWithMouseAt(Point{-1, 10}), (Point{-400 - 44, 300 - 44}));
    EXPECT_EQ(placeWithMouseAt(Point{10, 10}), (Point{960 - 44, 540 - 44}));
}

TEST_F(TallowLoaderPanelTest, CountsTheEdgeBetweenTwoScreensToOneOfThem)
{
    screens.others = {{{1920, 0}, {1280, 1080}}};
    EXPECT_EQ(placeWithMouseAt(Point{1919.5, 10}).x, 960 - 44);
    EXPECT_EQ(placeWithMouseAt(Point{1920, 10}).x, 1920 + 640 - 44);
}

TEST_F(TallowLoaderPanelTest, AppearsOnTheMainScreenIfThePointerIsOnNone)
{
    screens.others = {{{1920, 0}, {1280, 1080}}};
    EXPECT_EQ(placeWithMouseAt(Point{9000, 10}), (Point{960 - 44, 540 - 44}));
    record().origin = {};
    EXPECT_EQ(placeWithMouseAt(std::nullopt), (Point{960 - 44, 540 - 44}));
}

TEST_F(TallowLoaderPanelTest, AppearsOnTheFirstScreenIfNoneIsTheMainOne)
{
    screens.mainSize.reset();
    screens.others = {{{100, 100}, {200, 300}}, {{900, 0}, {100, 100}}};
    EXPECT_EQ(placeWithMouseAt(std::nullopt), (Point{200 - 44, 250 - 44}));
}

TEST_F(TallowLoaderPanelTest, StaysWhereItIsWithoutAScreen)
{
    screens.mainSize.reset();
    record().origin = {7, 8};
    EXPECT_EQ(placeWithMouseAt(Point{1, 1}), (Point{7, 8}));
}

TEST_F(TallowLoaderPanelTest, ShowsOpaqueWithoutTheKeyboardAndPulses)
{
    EXPECT_FALSE(record().onScreen);
    panel->orderFront();
    panel->startPulse();
    EXPECT_THAT(record().journal, ElementsAre("alpha 1", "front", "pulse"));
}

TEST_F(TallowLoaderPanelTest, FadesOutWithoutItsPulseAndMayBeDestroyedThen)
{
    panel->orderFront();
    panel->startPulse();
    record().journal.clear();
    panel->fadeOut([this] { panel.reset(); });
    EXPECT_FALSE(record().pulses);
    dispatch.advance(149ms);
    EXPECT_TRUE(record().onScreen);
    dispatch.advance(1ms);
    EXPECT_THAT(record().journal, ElementsAre("no pulse", "animate to 0 in 150 ms", "close"));
    EXPECT_FALSE(record().alive);
}

TEST_F(TallowLoaderPanelTest, HasItsMarkInTheMiddle)
{
    const Rect icon = TallowLoaderPanel::iconFrame;
    EXPECT_EQ(icon.midX(), TallowLoaderPanel::size.width / 2);
    EXPECT_EQ(icon.midY(), TallowLoaderPanel::size.height / 2);
    EXPECT_EQ(icon.size, (Size{48, 48}));
    EXPECT_EQ(panel->iconName(), "MenubarIcon");
    EXPECT_EQ(static_cast<int>(TallowLoaderPanel::level), 3);
    EXPECT_THAT(TallowLoaderPanel::pulseScales, ElementsAre(0.72, 1.0, 0.72));
    EXPECT_EQ(TallowLoaderPanel::pulseCycle, 1600ms);
}

} // namespace
} // namespace tallowbay
