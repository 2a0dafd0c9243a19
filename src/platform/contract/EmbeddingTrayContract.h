#pragma once

#include "platform/EmbeddingTray.h"

#include <gtest/gtest.h>

#include <optional>

namespace tallowbay::contract {

// Every embedding tray keeps its header's promises. A backend begins without a tray and offers:
//   const EmbeddingTray& tray();
//   void startTray(std::optional<Color> symbols);   anew, if there was one
//   void endTray();
//   void showIcon(const PixelRect&);    of ours, there
//   void coverIcon(const PixelRect&);   by a window of another program
template <typename Backend> class EmbeddingTrayContract : public testing::Test {
protected:
    static constexpr PixelRect place{100, 50, 24, 24};
    static constexpr Color red{1, 0, 0};

    Backend backend;
    const EmbeddingTray& tray = backend.tray();
};

TYPED_TEST_SUITE_P(EmbeddingTrayContract);

TYPED_TEST_P(EmbeddingTrayContract, HasAWindowWhileThereIsATray)
{
    EXPECT_EQ(this->tray.window(), 0u);
    this->backend.startTray(std::nullopt);
    EXPECT_NE(this->tray.window(), 0u);
    this->backend.endTray();
    EXPECT_EQ(this->tray.window(), 0u);
}

TYPED_TEST_P(EmbeddingTrayContract, HasAnotherWindowAfterTheTrayWasStartedAnew)
{
    this->backend.startTray(std::nullopt);
    const NativeWindow first = this->tray.window();
    EXPECT_EQ(this->tray.window(), first);
    this->backend.startTray(std::nullopt);
    EXPECT_NE(this->tray.window(), first);
}

TYPED_TEST_P(EmbeddingTrayContract, TellsTheColorOfSymbolsIfTheTrayDoes)
{
    EXPECT_EQ(this->tray.foreground(), std::nullopt);
    this->backend.startTray(this->red);
    EXPECT_EQ(this->tray.foreground(), this->red);
    this->backend.startTray(std::nullopt);
    EXPECT_EQ(this->tray.foreground(), std::nullopt);
}

TYPED_TEST_P(EmbeddingTrayContract, ShowsAnIconUntilSomethingLiesOverIt)
{
    EXPECT_FALSE(this->tray.showsIconAt(this->place));
    this->backend.showIcon(this->place);
    EXPECT_TRUE(this->tray.showsIconAt(this->place));
    this->backend.coverIcon(this->place);
    EXPECT_FALSE(this->tray.showsIconAt(this->place));
}

TYPED_TEST_P(EmbeddingTrayContract, ShowsNoIconInAnEmptyPlace)
{
    this->backend.showIcon(this->place);
    EXPECT_FALSE(this->tray.showsIconAt({110, 60, 24, 0}));
    EXPECT_FALSE(this->tray.showsIconAt({110, 60, 0, 24}));
}

REGISTER_TYPED_TEST_SUITE_P(
    EmbeddingTrayContract, HasAWindowWhileThereIsATray, HasAnotherWindowAfterTheTrayWasStartedAnew,
    TellsTheColorOfSymbolsIfTheTrayDoes, ShowsAnIconUntilSomethingLiesOverIt,
    ShowsNoIconInAnEmptyPlace);

} // namespace tallowbay::contract
