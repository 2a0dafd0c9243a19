#include "app/PasteWatcher.h"

#include "platform/headless/Desktop.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class PasteWatcherTest : public testing::Test {
protected:
    void press(KeyCode keyCode, EventFlags flags)
    {
        desktop.keyTap.press(keyCode, flags);
        desktop.dispatch.runMain();
    }

    void allowKeys(bool allowed)
    {
        allowed ? desktop.permissions.grantKeys() : desktop.permissions.refuseKeys();
    }

    headless::Desktop desktop;
    int pastes = 0;
    PasteWatcher watcher{desktop.platform(), [this] { ++pastes; }};
};

TEST_F(PasteWatcherTest, ListensAtOnceWhereItMay)
{
    watcher.startPasteWatcher();
    EXPECT_TRUE(desktop.keyTap.running());
    EXPECT_EQ(desktop.console.lines, Lines{"Paste watcher running (Cmd+V resets batch)"});
}

TEST_F(PasteWatcherTest, AsksEveryTwoSecondsUntilItMayListen)
{
    allowKeys(false);
    watcher.startPasteWatcher();
    desktop.dispatch.advance(20s);
    EXPECT_FALSE(desktop.keyTap.running());
    EXPECT_TRUE(desktop.console.lines.empty());

    allowKeys(true);
    desktop.dispatch.advance(1999ms);
    EXPECT_FALSE(desktop.keyTap.running());
    desktop.dispatch.advance(1ms);
    EXPECT_TRUE(desktop.keyTap.running());
    EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
    desktop.dispatch.advance(20s);
    EXPECT_EQ(desktop.keyTap.startCount, 1);
}

TEST_F(PasteWatcherTest, SaysOnceThatItCannotListenAndDoesNotTryAgain)
{
    desktop.keyTap.failNextStart();
    watcher.startPasteWatcher();
    EXPECT_EQ(
        desktop.console.lines, Lines{"CGEventTap creation failed — paste detection unavailable"});
    desktop.dispatch.advance(60s);
    EXPECT_EQ(desktop.keyTap.startCount, 1);
}

TEST_F(PasteWatcherTest, SeesAPaste)
{
    watcher.startPasteWatcher();
    press(9, eventFlag::command);
    EXPECT_EQ(pastes, 1);
}

TEST_F(PasteWatcherTest, HandsAPasteToTheMainQueue)
{
    watcher.startPasteWatcher();
    desktop.keyTap.press(9, eventFlag::command);
    EXPECT_EQ(pastes, 0);
    desktop.dispatch.runMain();
    EXPECT_EQ(pastes, 1);
}

TEST_F(PasteWatcherTest, TakesEveryVariantOfTheShortcutForAPaste)
{
    watcher.startPasteWatcher();
    press(9, eventFlag::command | eventFlag::shift);
    press(9, eventFlag::command | eventFlag::option);
    press(9, eventFlag::command | eventFlag::control | eventFlag::shift | eventFlag::option);
    EXPECT_EQ(pastes, 3);
}

TEST_F(PasteWatcherTest, TakesNoOtherKeyForAPaste)
{
    watcher.startPasteWatcher();
    press(9, 0);
    press(9, eventFlag::shift | eventFlag::control | eventFlag::option);
    press(8, eventFlag::command);
    EXPECT_EQ(pastes, 0);
}

TEST_F(PasteWatcherTest, HearsNothingOnceDisabled)
{
    watcher.startPasteWatcher();
    watcher.disableEventTap();
    press(9, eventFlag::command);
    EXPECT_EQ(pastes, 0);
    EXPECT_FALSE(desktop.keyTap.running());
}

TEST_F(PasteWatcherTest, StopsAskingWhenToldTo)
{
    allowKeys(false);
    watcher.startPasteWatcher();
    watcher.stopPolling();
    allowKeys(true);
    desktop.dispatch.advance(10s);
    EXPECT_FALSE(desktop.keyTap.running());
}

TEST_F(PasteWatcherTest, PostsExactlyOneCmdV)
{
    watcher.firePaste();
    using Posted = headless::JournalKeyPoster::Posted;
    const std::vector<Posted> expected{
        {9, KeyDirection::down, 0x100000}, {9, KeyDirection::up, 0x100000}};
    EXPECT_EQ(desktop.keyPoster.journal, expected);
}

} // namespace
} // namespace tallowbay
