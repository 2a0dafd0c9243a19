#include "app/ScreenshotWatcher.h"

#include "platform/headless/Desktop.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using Paths = std::vector<std::filesystem::path>;

const std::filesystem::path shot = "/home/u/Desktop/Screenshot 2026-01-05 at 10.31.12.png";

class ScreenshotWatcherTest : public testing::Test {
protected:
    ScreenshotWatcherTest()
    {
        watcher.onScreenshotDetected = [this](const std::filesystem::path& path) {
            EXPECT_TRUE(desktop.dispatch.onMainQueue());
            reported.push_back(path);
        };
    }

    void setLocation(const std::string& folder)
    {
        desktop.files.createFolders(folder);
        desktop.defaults.open("com.apple.screencapture")->set("location", {folder});
    }

    void create(const std::filesystem::path& path)
    {
        desktop.files.create(path);
        desktop.dispatch.runUntilIdle();
    }

    bool accepts(const std::filesystem::path& path)
    {
        desktop.files.create(path);
        return watcher.isScreenshot(path);
    }

    headless::Desktop desktop;
    ScreenshotLocation location{desktop.defaults, desktop.files, desktop.settings};
    ScreenshotWatcher watcher{desktop.platform(), location};
    Paths reported;
};

TEST_F(ScreenshotWatcherTest, ReportsANewScreenshot)
{
    watcher.start();
    create(shot);
    EXPECT_EQ(reported, Paths{shot});
}

TEST_F(ScreenshotWatcherTest, ReportsOnTheMainQueueAndNotInTheEvent)
{
    desktop.files.create(shot);
    watcher.handleEvents({shot});
    EXPECT_TRUE(reported.empty());
    desktop.dispatch.runMain();
    EXPECT_EQ(reported, Paths{shot});
}

TEST_F(ScreenshotWatcherTest, ReportsAPathOnceInThreeSeconds)
{
    watcher.start();
    create(shot);
    desktop.fileEvents.emit(shot);
    desktop.fileEvents.emit(shot);
    desktop.dispatch.advance(2999ms);
    EXPECT_EQ(reported.size(), 1u);

    desktop.dispatch.advance(1ms);
    desktop.fileEvents.emit(shot);
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(reported.size(), 2u);
}

TEST_F(ScreenshotWatcherTest, ReportsEachOfAnEventsPathsInOrder)
{
    const Paths paths{
        "/home/u/Desktop/Screenshot 2.png", "/home/u/Desktop/Screenshot 1.png",
        "/home/u/Desktop/notes.txt", "/home/u/Desktop/Screenshot 3.jpg"};
    for (const auto& path : paths)
        desktop.files.create(path);
    watcher.handleEvents(paths);
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(reported, (Paths{paths[0], paths[1], paths[3]}));
}

TEST_F(ScreenshotWatcherTest, ReportsAScreenshotThatIsRenamedUnderItsNewNameOnce)
{
    watcher.start();
    create(shot);
    const std::filesystem::path renamed = "/home/u/Desktop/Screenshot of a bug.png";
    desktop.files.rename(shot, renamed);
    desktop.files.rename(renamed, shot);
    desktop.files.rename(shot, renamed);
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(reported, (Paths{shot, renamed}));
}

TEST_F(ScreenshotWatcherTest, WaitsUntilTheFileIsComplete)
{
    watcher.start();
    desktop.files.beginWriting(shot);
    desktop.dispatch.advance(5s);
    EXPECT_TRUE(reported.empty());
    desktop.files.finishWriting(shot);
    desktop.dispatch.advance(5s);
    EXPECT_EQ(reported, Paths{shot});
}

TEST_F(ScreenshotWatcherTest, AsksForALatencyOfHalfASecond)
{
    watcher.start();
    ASSERT_EQ(desktop.fileEvents.running().size(), 1u);
    EXPECT_EQ(desktop.fileEvents.running().begin()->second->latency, 500ms);
}

TEST_F(ScreenshotWatcherTest, ReportsNothingAfterItWasStopped)
{
    watcher.start();
    watcher.stop();
    create(shot);
    EXPECT_TRUE(reported.empty());
    EXPECT_TRUE(desktop.fileEvents.running().empty());
}

TEST_F(ScreenshotWatcherTest, StaysIdleIfTheFolderCannotBeWatched)
{
    desktop.fileEvents.failNextStarts();
    watcher.start();
    create(shot);
    EXPECT_TRUE(reported.empty());
    EXPECT_TRUE(desktop.console.lines.empty());
}

TEST_F(ScreenshotWatcherTest, WatchesTheFolderAsItIsSetAtTheStart)
{
    setLocation("/media/shots");
    watcher.start();
    create(shot);
    create("/media/shots/Screenshot 1.png");
    EXPECT_EQ(reported, Paths{"/media/shots/Screenshot 1.png"});
}

class ScreenshotPlacesTest : public ScreenshotWatcherTest {
protected:
    ScreenshotPlacesTest()
    {
        desktop.settings.screenshotPlaces = [this] { return places; };
    }

    std::vector<ScreenshotPlace> places{
        {"/home/u/Pictures", false, "for tests"}, {"/home/u/Pictures/Shots", true, "for tests"}};
    const std::string name = "Screenshot 1.png";
};

TEST_F(ScreenshotPlacesTest, AreAllWatchedEachToItsDepth)
{
    watcher.start();
    create("/home/u/Pictures/" + name);
    create("/home/u/Pictures/holidays/" + name);
    create("/home/u/Pictures/Shots/2026/" + name);
    create("/home/u/Desktop/" + name);
    EXPECT_EQ(reported, (Paths{"/home/u/Pictures/" + name, "/home/u/Pictures/Shots/2026/" + name}));
}

TEST_F(ScreenshotPlacesTest, AreFollowedWithoutAGapForThoseThatStay)
{
    watcher.start();
    const auto first = desktop.fileEvents.running().begin()->second;
    places.erase(places.begin() + 1);
    places.front().reason = "for another reason";
    places.push_back({"/media/shots", true, "for tests"});
    watcher.followPlaces();
    EXPECT_EQ(desktop.fileEvents.running().begin()->second, first);
    EXPECT_EQ(watcher.watchedPlaces().front().place.reason, "for another reason");
    create("/home/u/Pictures/Shots/" + name);
    EXPECT_TRUE(reported.empty());
    create("/media/shots/" + name);
    EXPECT_EQ(reported.size(), 1u);
}

TEST_F(ScreenshotPlacesTest, ThatComeLaterMayHoldTheirFirstScreenshotAlready)
{
    desktop.files.create("/home/u/Pictures/Shots/Screenshot 0.png");
    watcher.start();
    desktop.files.create("/media/shots/" + name);
    places.push_back({"/media/shots", true, "for tests"});
    watcher.followPlaces();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(reported, Paths{"/media/shots/" + name});
}

TEST_F(ScreenshotPlacesTest, ThatReplaceAllOthersHoldOnlyOldScreenshots)
{
    watcher.start();
    desktop.files.create("/media/shots/" + name);
    setLocation("/media/shots");
    watcher.followPlaces();
    desktop.dispatch.runUntilIdle();
    EXPECT_TRUE(reported.empty());
    create("/home/u/Pictures/" + name);
    EXPECT_TRUE(reported.empty()) << "a chosen folder is followed alone";
    create("/media/shots/Screenshot 2.png");
    EXPECT_EQ(reported, Paths{"/media/shots/Screenshot 2.png"});
}

TEST_F(ScreenshotPlacesTest, SayWhatBecameOfThem)
{
    desktop.fileEvents.failNextStarts();
    watcher.start();
    desktop.fileEvents.setCoverage(FileEvents::Coverage::nearestFolders);
    const auto watched = watcher.watchedPlaces();
    ASSERT_EQ(watched.size(), 2u);
    EXPECT_TRUE(watched[0].isIdle);
    EXPECT_FALSE(watched[1].isIdle);
    EXPECT_EQ(watched[1].coverage, FileEvents::Coverage::nearestFolders);
    EXPECT_EQ(
        desktop.console.lines,
        std::vector<std::string>{"Too many folders in /home/u/Pictures/Shots: screenshots in the "
                                 "deepest of them go unnoticed"});
}

TEST_F(ScreenshotPlacesTest, SayThatTheyAreWatchedAgain)
{
    places.pop_back();
    watcher.start();
    desktop.fileEvents.setCoverage(FileEvents::Coverage::nothing);
    EXPECT_EQ(watcher.watchedPlaces().front().coverage, FileEvents::Coverage::nothing);
    desktop.fileEvents.setCoverage(FileEvents::Coverage::whole);
    EXPECT_EQ(watcher.watchedPlaces().front().coverage, FileEvents::Coverage::whole);
    EXPECT_EQ(
        desktop.console.lines,
        (std::vector<std::string>{
            "No watch is left for /home/u/Pictures: screenshots there go unnoticed",
            "All of /home/u/Pictures is watched again"}));
}

// A folder for which the system had no means at the start stayed unwatched for ever.
TEST_F(ScreenshotPlacesTest, ThatCouldNotBeWatchedAreTriedAgainWithWhatCameMeanwhile)
{
    desktop.fileEvents.failNextStarts(3);
    watcher.start();
    create("/home/u/Pictures/" + name);
    watcher.refresh();
    EXPECT_TRUE(watcher.watchedPlaces()[0].isIdle);
    EXPECT_FALSE(watcher.watchedPlaces()[1].isIdle);
    const auto second = desktop.fileEvents.running().begin()->second;
    watcher.refresh();
    desktop.dispatch.runUntilIdle();
    EXPECT_FALSE(watcher.watchedPlaces()[0].isIdle);
    EXPECT_EQ(desktop.fileEvents.running().begin()->second, second) << "watched on without a gap";
    EXPECT_EQ(reported, Paths{"/home/u/Pictures/" + name});
}

TEST_F(ScreenshotWatcherTest, KnowsWhatItNoticedLast)
{
    watcher.start();
    EXPECT_FALSE(watcher.lastNoticed());
    create(shot);
    ASSERT_TRUE(watcher.lastNoticed());
    EXPECT_EQ(watcher.lastNoticed()->file, shot);
    EXPECT_EQ(watcher.lastNoticed()->when, desktop.clock.wallNow());
}

TEST_F(ScreenshotWatcherTest, MayBeDestroyedWithReportsUnderWay)
{
    auto shortLived = std::make_unique<ScreenshotWatcher>(desktop.platform(), location);
    int calls = 0;
    shortLived->onScreenshotDetected = [&](const std::filesystem::path&) { ++calls; };
    desktop.files.create(shot);
    shortLived->handleEvents({shot});
    shortLived.reset();
    desktop.dispatch.advance(4s);
    EXPECT_EQ(calls, 0);
}

TEST_F(ScreenshotWatcherTest, SkipsAFileThatVanishedBeforeItWasLookedAt)
{
    EXPECT_FALSE(watcher.isScreenshot(shot));
}

TEST_F(ScreenshotWatcherTest, SkipsAFolder)
{
    desktop.files.createFolders("/home/u/Desktop/Screenshot 1.png");
    EXPECT_FALSE(watcher.isScreenshot("/home/u/Desktop/Screenshot 1.png"));
}

TEST_F(ScreenshotWatcherTest, SkipsFoldersCalledOptimizedOrOriginal)
{
    EXPECT_FALSE(accepts("/home/u/Desktop/optimized/Screenshot 1.png"));
    EXPECT_FALSE(accepts("/home/u/Desktop/original/Screenshot 1.png"));
    EXPECT_TRUE(accepts("/home/u/Desktop/optimized/deeper/Screenshot 1.png"));
    EXPECT_TRUE(accepts("/home/u/Desktop/originals/Screenshot 1.png"));
}

TEST_F(ScreenshotWatcherTest, SkipsTheProgramsOwnFolder)
{
    EXPECT_FALSE(accepts("/home/u/Downloads/Tallowbay/Screenshot 1.png"));
    EXPECT_FALSE(accepts("/home/u/Downloads/Tallowbay/optimized/Screenshot 1.png"));
    EXPECT_FALSE(accepts("/home/u/Downloads/Tallowbay/some/where/Screenshot 1.png"));
    EXPECT_TRUE(accepts("/home/u/Downloads/Screenshot 1.png"));
    EXPECT_TRUE(accepts("/home/u/Downloads/Tallowbay shots/Screenshot 1.png"));
}

TEST_F(ScreenshotWatcherTest, SkipsItsOwnFolderEvenIfScreenshotsAreSavedThere)
{
    setLocation("/home/u/Downloads/Tallowbay/optimized");
    watcher.start();
    create("/home/u/Downloads/Tallowbay/optimized/Screenshot 1.png");
    EXPECT_TRUE(reported.empty());
}

TEST_F(ScreenshotWatcherTest, ComparesTheExtensionInAnyCase)
{
    EXPECT_TRUE(accepts("/home/u/Desktop/Screenshot 2024-05-01 at 14.03.27.PNG"));
    EXPECT_TRUE(accepts("/home/u/Desktop/Screenshot 2024-05-01 at 14.03.27.Jpeg"));
    EXPECT_TRUE(accepts("/home/u/Desktop/Screenshot 2024-05-01 at 14.03.27.JPG"));
}

TEST_F(ScreenshotWatcherTest, SkipsOtherKindsOfPicture)
{
    EXPECT_FALSE(accepts("/home/u/Desktop/Screenshot 1.heic"));
    EXPECT_FALSE(accepts("/home/u/Desktop/Screenshot 1.tiff"));
    EXPECT_FALSE(accepts("/home/u/Desktop/Screenshot 1"));
}

TEST_F(ScreenshotWatcherTest, ComparesThePrefixWithItsCase)
{
    EXPECT_FALSE(accepts("/home/u/Desktop/screenshot 1.png"));
    EXPECT_TRUE(accepts("/home/u/Desktop/Screen Shot 1.png"));
}

TEST_F(ScreenshotWatcherTest, AcceptsTheNamesOfTheDesktopsOwnTools)
{
    EXPECT_FALSE(accepts("/home/u/Desktop/Screenshot_20260105.png"));
    desktop.settings.screenshotNamePatterns = {"Screenshot_[0-9]+"};
    ScreenshotWatcher other(desktop.platform(), location);
    EXPECT_TRUE(other.isScreenshot("/home/u/Desktop/Screenshot_20260105.png"));
}

TEST_F(ScreenshotWatcherTest, FollowsTheUsersOwnPatternsWhileItRuns)
{
    watcher.start();
    create("/home/u/Desktop/maim-1.png");
    desktop.defaults.standard().set("screenshotNamePatterns", {"maim-*"});
    create("/home/u/Desktop/maim-2.png");
    EXPECT_EQ(reported, Paths{"/home/u/Desktop/maim-2.png"});
}

// What was wrong with them was said no sooner than the next file came.
TEST_F(ScreenshotWatcherTest, KnowsWhatIsWrongWithTheUsersPatternsBeforeAnyFileComes)
{
    watcher.start();
    desktop.defaults.standard().set("screenshotNamePatterns", {true});
    watcher.refresh();
    EXPECT_EQ(watcher.nameProblems().size(), 1u);
}

TEST_F(ScreenshotWatcherTest, ReportsNamesWithAnyByte)
{
    watcher.start();
    const std::filesystem::path odd = "/home/u/Desktop/Screenshot '\"\n\xff at 1.png";
    create(odd);
    EXPECT_EQ(reported, Paths{odd});
}

} // namespace
} // namespace tallowbay
