#include "app/LocationPoll.h"

#include "app/ScreenshotWatcher.h"
#include "platform/headless/Desktop.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;

class LocationPollTest : public testing::Test {
protected:
    void set(const std::string& key, const std::string& value)
    {
        desktop.defaults.open("com.apple.screencapture")->set(key, {value});
    }

    void start()
    {
        watcher.start();
        poll.startLocationPollTimer();
    }

    std::filesystem::path watchedFolder()
    {
        const auto& streams = desktop.fileEvents.running();
        return streams.size() == 1 ? streams.begin()->second->folder : "(not one stream)";
    }

    headless::Desktop desktop;
    bool onboardingVisible = false;
    ScreenshotLocation location{desktop.defaults, desktop.files, desktop.settings};
    ScreenshotWatcher watcher{desktop.platform(), location};
    LocationPoll poll{desktop.platform(), location, watcher, [this] { return onboardingVisible; }};
};

TEST_F(LocationPollTest, FollowsAChangeOfTheFolderWithinHalfASecond)
{
    start();
    set("location", "/media/shots");
    desktop.dispatch.advance(499ms);
    EXPECT_EQ(watchedFolder(), "/home/u/Desktop");
    desktop.dispatch.advance(1ms);
    EXPECT_EQ(watchedFolder(), "/media/shots");
}

TEST_F(LocationPollTest, FollowsAChangeOfTheToolsFoldersAsLongAsNoneIsChosen)
{
    std::vector<ScreenshotPlace> places{{"/home/u/Pictures", false, "for tests"}};
    desktop.settings.screenshotPlaces = [&] { return places; };
    start();
    places.push_back({"/media/tool", true, "for tests"});
    desktop.dispatch.advance(500ms);
    EXPECT_EQ(desktop.fileEvents.running().size(), 2u);
    set("location", "/media/shots");
    desktop.dispatch.advance(500ms);
    EXPECT_EQ(watchedFolder(), "/media/shots");
}

TEST_F(LocationPollTest, LeavesTheStreamAloneWhileTheFolderStaysTheSame)
{
    start();
    const auto stream = desktop.fileEvents.running().begin()->second;
    desktop.dispatch.advance(10s);
    EXPECT_EQ(desktop.fileEvents.running().begin()->second, stream);
}

TEST_F(LocationPollTest, RestartsTheWatcherIfNoFolderWasEverRecorded)
{
    poll.checkLocationChange();
    EXPECT_EQ(watchedFolder(), "/home/u/Desktop");
}

TEST_F(LocationPollTest, TriesAgainWhatCouldNotBeWatchedWithinHalfASecond)
{
    desktop.fileEvents.failNextStarts();
    start();
    EXPECT_TRUE(desktop.fileEvents.running().empty());
    desktop.dispatch.advance(500ms);
    EXPECT_EQ(watchedFolder(), "/home/u/Desktop");
}

TEST_F(LocationPollTest, StopsWithItsTimer)
{
    start();
    poll.stop();
    set("location", "/media/shots");
    desktop.dispatch.advance(5s);
    EXPECT_EQ(watchedFolder(), "/home/u/Desktop");
}

TEST_F(LocationPollTest, ShowsTheAlertWithItsTextsWhenScreenshotsGoToTheClipboard)
{
    set("target", "Clipboard");
    start();
    EXPECT_TRUE(desktop.alerts.shown.empty());
    desktop.dispatch.advance(500ms);
    ASSERT_EQ(desktop.alerts.shown.size(), 1u);
    const Alert& alert = desktop.alerts.shown.front();
    EXPECT_EQ(alert.message, "Screenshot Location Required");
    EXPECT_EQ(
        alert.informativeText,
        "Tallowbay needs screenshots to be saved to a folder so it can compress them.\n\nYour Mac "
        "is currently set to save screenshots to Clipboard. Tallowbay cannot detect those.");
    EXPECT_EQ(
        alert.buttons, (std::vector<std::string>{"Change to Downloads", "I'll do it myself"}));
}

TEST_F(LocationPollTest, ShowsTheAlertOncePerFolderSetting)
{
    set("target", "CLIPBOARD");
    start();
    desktop.dispatch.advance(500ms);
    desktop.alerts.press(1);
    desktop.dispatch.advance(10s);
    EXPECT_EQ(desktop.alerts.shown.size(), 1u);

    set("location", "/media/shots");
    desktop.dispatch.advance(500ms);
    EXPECT_EQ(desktop.alerts.shown.size(), 2u);
}

TEST_F(LocationPollTest, ShowsNoSecondAlertWhileOneIsOpen)
{
    set("target", "clipboard");
    start();
    desktop.dispatch.advance(500ms);
    set("location", "/media/shots");
    desktop.dispatch.advance(5s);
    EXPECT_EQ(desktop.alerts.shown.size(), 1u);
}

TEST_F(LocationPollTest, ShowsNoAlertForAnyOtherTarget)
{
    set("target", "file");
    start();
    desktop.dispatch.advance(5s);
    EXPECT_TRUE(desktop.alerts.shown.empty());
}

TEST_F(LocationPollTest, ChangesToDownloadsByTwoCommandsInThisOrder)
{
    set("target", "clipboard");
    start();
    desktop.dispatch.advance(500ms);
    desktop.alerts.press(0);
    using Call = headless::ScriptedProcesses::Call;
    const std::vector<Call> expected{
        {"/usr/bin/defaults",
         {"write", "com.apple.screencapture", "location", "/home/u/Downloads"}},
        {"/usr/bin/defaults", {"delete", "com.apple.screencapture", "target"}},
    };
    EXPECT_EQ(desktop.processes.journal, expected);
}

TEST_F(LocationPollTest, WatchesTheNewFolderAfterTheChangeToDownloads)
{
    desktop.processes.install(
        "/usr/bin/defaults", [this](const std::vector<std::string>& arguments) {
            auto domain = desktop.defaults.open(arguments.at(1));
            if (arguments.at(0) == "write")
                domain->set(arguments.at(2), {arguments.at(3)});
            else
                domain->remove(arguments.at(2));
            return 0;
        });
    set("target", "clipboard");
    start();
    desktop.dispatch.advance(500ms);
    desktop.alerts.press(0);
    desktop.dispatch.advance(500ms);
    EXPECT_EQ(watchedFolder(), "/home/u/Downloads");
    desktop.dispatch.advance(5s);
    EXPECT_EQ(desktop.alerts.shown.size(), 1u);
}

TEST_F(LocationPollTest, RunsNothingForTheSecondButton)
{
    set("target", "clipboard");
    start();
    desktop.dispatch.advance(500ms);
    desktop.alerts.press(1);
    EXPECT_TRUE(desktop.processes.journal.empty());
}

TEST_F(LocationPollTest, LeavesTheAlertToTheFirstRunWindowButStillFollowsTheFolder)
{
    onboardingVisible = true;
    set("target", "clipboard");
    start();
    set("location", "/media/shots");
    desktop.dispatch.advance(5s);
    EXPECT_TRUE(desktop.alerts.shown.empty());
    EXPECT_EQ(watchedFolder(), "/media/shots");

    onboardingVisible = false;
    desktop.dispatch.advance(500ms);
    EXPECT_EQ(desktop.alerts.shown.size(), 1u);
}

} // namespace
} // namespace tallowbay
