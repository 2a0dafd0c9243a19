#pragma once

#include "platform/WindowSystem.h"

#include <gmock/gmock.h>

namespace tallowbay::contract {

// Every window system keeps its header's promises. A backend, whose desktop composes no windows at
// first, offers:
//   WindowSystem& windows();
//   NativeWindow window();          one of ours
//   void startComposing();          without blur
//   void offerBlur();               as a program does that composes the windows, or once did
//   PixelRegion blurredRegion();    of our window; empty for none
//   PixelRegion shape();            of our window, after it was cut
//   void setClass(name);            of our window, which has none at first
//   bool isOffTaskbar();            our window
//   void show();                    our window
//   bool hasKeyboard();             our window
template <typename Backend> class WindowSystemContract : public testing::Test {
protected:
    Backend backend;
    WindowSystem& windows = backend.windows();
    const NativeWindow window = backend.window();
};

TYPED_TEST_SUITE_P(WindowSystemContract);

TYPED_TEST_P(WindowSystemContract, KnowsWhetherWindowsAreComposedAtThatMoment)
{
    EXPECT_FALSE(this->windows.composesWindows());
    this->backend.startComposing();
    EXPECT_TRUE(this->windows.composesWindows());
}

TYPED_TEST_P(WindowSystemContract, BlursWhereItIsOfferedAndWindowsAreComposed)
{
    this->backend.startComposing();
    EXPECT_FALSE(this->windows.blursBehind());
    this->backend.offerBlur();
    EXPECT_TRUE(this->windows.blursBehind());
}

TYPED_TEST_P(WindowSystemContract, BlursNothingWhereWindowsAreNotComposed)
{
    this->backend.offerBlur();
    EXPECT_FALSE(this->windows.blursBehind());
}

TYPED_TEST_P(WindowSystemContract, BlursTheRegionThatWasGivenLast)
{
    this->windows.blurBehind(this->window, {{1, 2, 30, 40}, {5, 6, 70, 80}});
    EXPECT_THAT(
        this->backend.blurredRegion(),
        testing::ElementsAre(PixelRect{1, 2, 30, 40}, PixelRect{5, 6, 70, 80}));
    this->windows.blurBehind(this->window, {{9, 8, 7, 6}});
    EXPECT_THAT(this->backend.blurredRegion(), testing::ElementsAre(PixelRect{9, 8, 7, 6}));
}

TYPED_TEST_P(WindowSystemContract, TakesTheWishForBlurBackWithAnEmptyRegion)
{
    this->windows.blurBehind(this->window, {{1, 2, 30, 40}});
    this->windows.blurBehind(this->window, {});
    EXPECT_THAT(this->backend.blurredRegion(), testing::IsEmpty());
}

TYPED_TEST_P(WindowSystemContract, KnowsWhatSortOfProgramAWindowBelongsTo)
{
    EXPECT_EQ(this->windows.windowClass(this->window), "");
    this->backend.setClass("Editor-class");
    EXPECT_EQ(this->windows.windowClass(this->window), "Editor-class");
    EXPECT_EQ(this->windows.windowClass(0), "");
}

TYPED_TEST_P(WindowSystemContract, CutsAWindowToTheShapeThatWasGivenLast)
{
    this->windows.cutToShape(this->window, {{0, 0, 1, 1}});
    this->windows.cutToShape(this->window, {{2, 0, 6, 1}, {0, 1, 10, 5}});
    EXPECT_THAT(
        this->backend.shape(), testing::ElementsAre(PixelRect{2, 0, 6, 1}, PixelRect{0, 1, 10, 5}));
}

TYPED_TEST_P(WindowSystemContract, LeavesNothingOfAWindowThatIsCutToAnEmptyShape)
{
    this->windows.cutToShape(this->window, {{0, 0, 1, 1}});
    this->windows.cutToShape(this->window, {});
    EXPECT_THAT(this->backend.shape(), testing::IsEmpty());
}

TYPED_TEST_P(WindowSystemContract, KeepsShapeAndBlurApart)
{
    this->windows.cutToShape(this->window, {{0, 0, 10, 10}});
    this->windows.blurBehind(this->window, {{1, 1, 5, 5}});
    EXPECT_THAT(this->backend.shape(), testing::ElementsAre(PixelRect{0, 0, 10, 10}));
    EXPECT_THAT(this->backend.blurredRegion(), testing::ElementsAre(PixelRect{1, 1, 5, 5}));
}

TYPED_TEST_P(WindowSystemContract, KeepsAWindowOffTheTaskbar)
{
    EXPECT_FALSE(this->backend.isOffTaskbar());
    this->windows.keepOffTaskbar(this->window);
    this->windows.keepOffTaskbar(this->window);
    EXPECT_TRUE(this->backend.isOffTaskbar());
}

TYPED_TEST_P(WindowSystemContract, GivesAWindowTheKeyboard)
{
    this->backend.show();
    EXPECT_FALSE(this->backend.hasKeyboard());
    this->windows.activate(this->window);
    EXPECT_TRUE(this->backend.hasKeyboard());
}

TYPED_TEST_P(WindowSystemContract, KnowsTheWindowThatHasTheKeyboard)
{
    this->backend.show();
    EXPECT_NE(this->windows.activeWindow(), this->window);
    this->windows.activate(this->window);
    EXPECT_TRUE(this->backend.hasKeyboard());
    EXPECT_EQ(this->windows.activeWindow(), this->window);
}

REGISTER_TYPED_TEST_SUITE_P(
    WindowSystemContract, KnowsWhetherWindowsAreComposedAtThatMoment,
    BlursWhereItIsOfferedAndWindowsAreComposed, BlursNothingWhereWindowsAreNotComposed,
    BlursTheRegionThatWasGivenLast, TakesTheWishForBlurBackWithAnEmptyRegion,
    KnowsWhatSortOfProgramAWindowBelongsTo, CutsAWindowToTheShapeThatWasGivenLast,
    LeavesNothingOfAWindowThatIsCutToAnEmptyShape, KeepsShapeAndBlurApart,
    KeepsAWindowOffTheTaskbar, GivesAWindowTheKeyboard, KnowsTheWindowThatHasTheKeyboard);

} // namespace tallowbay::contract
