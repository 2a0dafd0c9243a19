#include "libexec/screencapture/RegionSelection.h"

#include <gtest/gtest.h>

namespace tallowbay::screencapture {

namespace {

using Key = RegionSelection::Key;
using Step = RegionSelection::Step;

// A wide screen and, to its right, a lower one that hangs from the same upper edge.
class RegionSelectionTest : public testing::Test {
protected:
    void press(Key key, int times = 1, Step step = Step::Fine)
    {
        for (int i = 0; i < times; ++i)
            selection.keyPressed(key, step);
    }

    void drag(QPoint from, QPoint to)
    {
        selection.primaryPressed(from);
        selection.pointerMoved(to);
        selection.primaryReleased(to);
    }

    RegionSelection selection{{QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 800)}, {100, 100}};
};

TEST_F(RegionSelectionTest, HasNoRegionBeforeOneIsBegun)
{
    selection.pointerMoved({500, 500});
    EXPECT_FALSE(selection.region());
    EXPECT_FALSE(selection.confirmed());
}

TEST_F(RegionSelectionTest, HoldsBothThePixelItBeganOnAndTheOneThePointerIsOn)
{
    drag({10, 20}, {19, 39});
    EXPECT_TRUE(selection.confirmed());
    EXPECT_EQ(selection.region(), QRect(10, 20, 10, 20));
}

TEST_F(RegionSelectionTest, MayBeDraggedInAnyDirection)
{
    drag({19, 39}, {10, 20});
    EXPECT_EQ(selection.region(), QRect(10, 20, 10, 20));
}

TEST_F(RegionSelectionTest, CanHoldAScreenToItsLastPixel)
{
    drag({0, 0}, {1919, 1079});
    EXPECT_EQ(selection.region(), QRect(0, 0, 1920, 1080));
}

TEST_F(RegionSelectionTest, ReachesOverTwoScreens)
{
    drag({1900, 10}, {1999, 109});
    EXPECT_EQ(selection.region(), QRect(1900, 10, 100, 100));
}

TEST_F(RegionSelectionTest, ShowsTheRegionWhileItIsDragged)
{
    selection.primaryPressed({10, 10});
    selection.pointerMoved({29, 19});
    EXPECT_EQ(selection.region(), QRect(10, 10, 20, 10));
    EXPECT_FALSE(selection.confirmed());
}

TEST_F(RegionSelectionTest, GoesOnAfterAPlainClick)
{
    drag({50, 50}, {50, 50});
    EXPECT_FALSE(selection.confirmed());
    EXPECT_FALSE(selection.cancelled());
    EXPECT_FALSE(selection.region());
}

TEST_F(RegionSelectionTest, IgnoresARegionOneHigh)
{
    drag({50, 50}, {90, 50});
    EXPECT_FALSE(selection.confirmed());
    EXPECT_FALSE(selection.region());
}

TEST_F(RegionSelectionTest, TakesARegionOfTwoByTwo)
{
    drag({50, 50}, {51, 51});
    EXPECT_TRUE(selection.confirmed());
}

TEST_F(RegionSelectionTest, CanSelectAfterARegionWasTooSmall)
{
    drag({50, 50}, {50, 50});
    drag({10, 10}, {19, 19});
    EXPECT_EQ(selection.region(), QRect(10, 10, 10, 10));
}

TEST_F(RegionSelectionTest, IsCancelledByEscAndByTheRightButton)
{
    press(Key::Cancel);
    EXPECT_TRUE(selection.cancelled());
    RegionSelection other({QRect(0, 0, 100, 100)}, {});
    other.secondaryPressed();
    EXPECT_TRUE(other.cancelled());
}

TEST_F(RegionSelectionTest, IsCancelledInTheMiddleOfADrag)
{
    selection.primaryPressed({10, 10});
    selection.pointerMoved({90, 90});
    selection.secondaryPressed();
    selection.primaryReleased({90, 90});
    EXPECT_TRUE(selection.cancelled());
    EXPECT_FALSE(selection.confirmed());
}

TEST_F(RegionSelectionTest, StaysAsItEnded)
{
    drag({10, 10}, {19, 19});
    press(Key::Cancel);
    selection.secondaryPressed();
    selection.pointerMoved({500, 500});
    EXPECT_FALSE(selection.cancelled());
    EXPECT_EQ(selection.region(), QRect(10, 10, 10, 10));
}

TEST_F(RegionSelectionTest, MovesThePointerByOnePixelWithAnArrow)
{
    press(Key::Right, 3);
    press(Key::Down, 2);
    press(Key::Left);
    press(Key::Up);
    EXPECT_EQ(selection.pointer(), QPoint(102, 101));
}

TEST_F(RegionSelectionTest, MovesThePointerByTenWithShift)
{
    press(Key::Right, 2, Step::Coarse);
    press(Key::Up, 1, Step::Coarse);
    EXPECT_EQ(selection.pointer(), QPoint(120, 90));
}

TEST_F(RegionSelectionTest, NudgesTheCornerOfADrag)
{
    selection.primaryPressed({10, 10});
    selection.pointerMoved({29, 29});
    press(Key::Right);
    press(Key::Up, 1, Step::Coarse);
    EXPECT_EQ(selection.region(), QRect(10, 10, 21, 10));
}

TEST_F(RegionSelectionTest, CanBeUsedWithTheKeyboardAlone)
{
    press(Key::Confirm);
    press(Key::Right, 4, Step::Coarse);
    press(Key::Down, 9);
    press(Key::Confirm);
    EXPECT_TRUE(selection.confirmed());
    EXPECT_EQ(selection.region(), QRect(100, 100, 41, 10));
}

TEST_F(RegionSelectionTest, GoesOnAfterTwoConfirmationsOnTheSpot)
{
    press(Key::Confirm, 2);
    EXPECT_FALSE(selection.confirmed());
    EXPECT_FALSE(selection.region());
}

TEST_F(RegionSelectionTest, LetsTheMouseExtendWhatTheKeyboardBegan)
{
    press(Key::Confirm);
    selection.pointerMoved({119, 119});
    press(Key::Confirm);
    EXPECT_EQ(selection.region(), QRect(100, 100, 20, 20));
}

TEST_F(RegionSelectionTest, BeginsAnewWhereTheMouseIsPressed)
{
    press(Key::Confirm);
    drag({300, 300}, {309, 309});
    EXPECT_EQ(selection.region(), QRect(300, 300, 10, 10));
}

TEST_F(RegionSelectionTest, IsNotConfirmedByKeyWhileTheButtonIsDown)
{
    selection.primaryPressed({10, 10});
    selection.pointerMoved({90, 90});
    press(Key::Confirm);
    EXPECT_FALSE(selection.confirmed());
    selection.primaryReleased({90, 90});
    EXPECT_TRUE(selection.confirmed());
}

TEST_F(RegionSelectionTest, IgnoresTheReleaseOfAButtonThatWasDownBefore)
{
    selection.primaryReleased({500, 500});
    EXPECT_FALSE(selection.confirmed());
    EXPECT_EQ(selection.pointer(), QPoint(100, 100));
}

TEST_F(RegionSelectionTest, KeepsThePointerOnAScreen)
{
    press(Key::Left, 50, Step::Coarse);
    EXPECT_EQ(selection.pointer(), QPoint(0, 100));
    selection.pointerMoved({2500, 900});
    EXPECT_EQ(selection.pointer(), QPoint(2500, 799));
}

TEST_F(RegionSelectionTest, CrossesToTheNextScreenByKey)
{
    selection.pointerMoved({1919, 400});
    press(Key::Right);
    EXPECT_EQ(selection.pointer(), QPoint(1920, 400));
}

TEST_F(RegionSelectionTest, StartsOnAScreenWhereverThePointerWas)
{
    const RegionSelection lost({QRect(0, 0, 100, 100)}, {-20, 400});
    EXPECT_EQ(lost.pointer(), QPoint(0, 99));
}

const QRect screen(0, 0, 1000, 800);

TEST(LabelPlace, IsBelowTheRegionsRightEnd)
{
    EXPECT_EQ(labelPlace({100, 100, 300, 200}, {80, 24}, screen, 8), QRect(320, 308, 80, 24));
}

TEST(LabelPlace, IsAboveWhereThereIsNoRoomBelow)
{
    EXPECT_EQ(labelPlace({100, 600, 300, 190}, {80, 24}, screen, 8), QRect(320, 568, 80, 24));
}

TEST(LabelPlace, IsInsideARegionAsHighAsTheScreen)
{
    EXPECT_EQ(labelPlace({100, 0, 300, 800}, {80, 24}, screen, 8), QRect(312, 768, 80, 24));
}

TEST(LabelPlace, StaysOnTheScreenBesideANarrowRegion)
{
    EXPECT_EQ(labelPlace({0, 100, 4, 4}, {80, 24}, screen, 8), QRect(8, 112, 80, 24));
}

TEST(LabelPlace, StaysOnThePointersScreenWhenTheRegionReachesOverTwo)
{
    const QRect right(1000, 0, 1000, 800);
    EXPECT_EQ(labelPlace({900, 100, 200, 100}, {80, 24}, screen, 8), QRect(920, 208, 80, 24));
    EXPECT_EQ(labelPlace({900, 100, 200, 100}, {80, 24}, right, 8), QRect(1020, 208, 80, 24));
}

} // namespace

} // namespace tallowbay::screencapture
