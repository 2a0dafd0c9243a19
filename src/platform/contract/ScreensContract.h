#pragma once

#include "platform/Screens.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// How the screens stand. The main one is 1000 points wide and 600 high.
enum class ScreenArrangement { mainAlone, mainRightOfAndBelowAnother, none };

// All screens keep their header's promises. A backend offers:
//   const Screens& screensIn(ScreenArrangement);   once a test
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

REGISTER_TYPED_TEST_SUITE_P(
    ScreensContract, GivesTheFullFrameOfTheOnlyScreen,
    HasItsOriginInTheMainScreensCornerWhereverThatScreenStands,
    GivesNoFrameWhileNoScreenIsConnected);

} // namespace tallowbay::contract
