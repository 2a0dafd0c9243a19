#pragma once

#include "platform/Screens.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay::contract {

// How the screens stand. The main one is 1000 points wide and 600 high; the other is 300 wide and
// 200 high, and its lower right corner touches the main one's upper left.
enum class ScreenArrangement { mainAlone, mainRightOfAndBelowAnother, none };

// All screens keep their header's promises. A backend offers:
//   const Screens& screensIn(ScreenArrangement);   once a test
//   void moveMouseTo(Point);   to a place on the main screen
template <typename Backend> class ScreensContract : public testing::Test {
protected:
    const Rect expected{{0, 0}, {1000, 600}};
    Backend backend;
};

TYPED_TEST_SUITE_P(ScreensContract);

TYPED_TEST_P(ScreensContract, GivesTheFullFrameOfTheOnlyScreen)
{
    const Screens& screens = this->backend.screensIn(ScreenArrangement::mainAlone);
    EXPECT_EQ(screens.mainFrame(), this->expected);
}

TYPED_TEST_P(ScreensContract, HasItsOriginInTheMainScreensCornerWhereverThatScreenStands)
{
    const Screens& screens = this->backend.screensIn(ScreenArrangement::mainRightOfAndBelowAnother);
    EXPECT_EQ(screens.mainFrame(), this->expected);
}

TYPED_TEST_P(ScreensContract, GivesNoFrameWhileNoScreenIsConnected)
{
    const Screens& screens = this->backend.screensIn(ScreenArrangement::none);
    EXPECT_EQ(screens.mainFrame(), std::nullopt);
}

TYPED_TEST_P(ScreensContract, GivesTheFramesOfAllScreens)
{
    const Screens& screens = this->backend.screensIn(ScreenArrangement::mainRightOfAndBelowAnother);
    const Rect other{{-300, 600}, {300, 200}};
    EXPECT_THAT(screens.frames(), testing::UnorderedElementsAre(this->expected, other));
}

TYPED_TEST_P(ScreensContract, GivesNoFramesWhileNoScreenIsConnected)
{
    const Screens& screens = this->backend.screensIn(ScreenArrangement::none);
    EXPECT_THAT(screens.frames(), testing::IsEmpty());
    EXPECT_EQ(screens.pointer(), std::nullopt);
}

TYPED_TEST_P(ScreensContract, KnowsWhereTheMouseIs)
{
    const Screens& screens = this->backend.screensIn(ScreenArrangement::mainRightOfAndBelowAnother);
    for (const Point place : {Point{0, 0}, Point{999, 599}, Point{400, 100}}) {
        this->backend.moveMouseTo(place);
        const auto told = screens.pointer();
        ASSERT_TRUE(told);
        EXPECT_EQ(*told, place);
    }
}

REGISTER_TYPED_TEST_SUITE_P(
    ScreensContract, GivesTheFullFrameOfTheOnlyScreen,
    HasItsOriginInTheMainScreensCornerWhereverThatScreenStands,
    GivesNoFrameWhileNoScreenIsConnected, GivesTheFramesOfAllScreens,
    GivesNoFramesWhileNoScreenIsConnected, KnowsWhereTheMouseIs);

} // namespace tallowbay::contract
