#include "app/AutomaticCleanup.h"

#include "capture/ScreenshotLocation.h"
#include "platform/headless/Desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Path = std::filesystem::path;
using headless::optimized;

const Path originals = "/home/u/Desktop";
constexpr auto limit = 2'592'000s;

class AutomaticCleanupTest : public testing::Test {
protected:
    AutomaticCleanupTest() { set("autoCleanupEnabled", {true}); }

    void set(const std::string& key, DefaultsValue value)
    {
        desktop.defaults.standard().set(key, std::move(value));
    }

    Path makeFile(const Path& path, std::chrono::nanoseconds age = limit + 1s)
    {
        desktop.files.create(path);
        desktop.files.setCreationDate(path, desktop.clock.wallNow() - age);
        return path;
    }

    void check()
    {
        cleanup.performCleanupIfNeeded();
        desktop.dispatch.runMain();
    }

    bool exists(const Path& path) { return desktop.files.exists(path); }

    headless::Desktop desktop;
    ScreenshotLocation location{desktop.defaults, desktop.files, desktop.settings};
    std::vector<AutomaticCleanup::Paths> forgotten;
    AutomaticCleanup::Surroundings surroundings{
        desktop.dispatch, desktop.clock, desktop.files, desktop.defaults.standard(), location};
    AutomaticCleanup cleanup{
        surroundings, [this](const AutomaticCleanup::Paths& paths) { forgotten.push_back(paths); }};
    const Path old = makeFile(optimized / "Screenshot 1.png");
};

// The switches.

TEST_F(AutomaticCleanupTest, DeletesNothingUnlessItIsSwitchedOn)
{
    desktop.defaults.standard().remove("autoCleanupEnabled");
    set("autoCleanupCompressedEnabled", {true});
    set("autoCleanupOriginalsEnabled", {true});
    const auto original = makeFile(originals / "Screenshot 1.png");
    check();
    set("autoCleanupEnabled", {false});
    check();
    EXPECT_TRUE(exists(old));
    EXPECT_TRUE(exists(original));
    EXPECT_THAT(forgotten, IsEmpty());
}

TEST_F(AutomaticCleanupTest, DeletesCopiesAndKeepsOriginalsIfOnlySwitchedOn)
{
    const auto original = makeFile(originals / "Screenshot 1.png");
    check();
    EXPECT_FALSE(exists(old));
    EXPECT_TRUE(exists(original));
}

TEST_F(AutomaticCleanupTest, KeepsCopiesIfTheirSwitchIsOff)
{
    for (const DefaultsValue& off :
         {DefaultsValue{false}, DefaultsValue{std::int64_t{0}}, DefaultsValue{"no"},
          DefaultsValue{DefaultsValue::Dictionary{}}}) {
        set("autoCleanupCompressedEnabled", off);
        check();
        EXPECT_TRUE(exists(old));
    }
    set("autoCleanupCompressedEnabled", {true});
    check();
    EXPECT_FALSE(exists(old));
}

TEST_F(AutomaticCleanupTest, DeletesOriginalsIfTheirSwitchIsOn)
{
    set("autoCleanupOriginalsEnabled", {true});
    set("autoCleanupCompressedEnabled", {false});
    const auto original = makeFile(originals / "Screenshot 1.png");
    check();
    EXPECT_FALSE(exists(original));
    EXPECT_TRUE(exists(old));
}

TEST_F(AutomaticCleanupTest, DeletesOriginalsWhereTheSystemSavesThem)
{
    set("autoCleanupOriginalsEnabled", {true});
    desktop.defaults.open("com.apple.screencapture")->set("location", {"/media/shots"});
    const auto here = makeFile("/media/shots/Screenshot 1.png");
    const auto elsewhere = makeFile(originals / "Screenshot 1.png");
    check();
    EXPECT_FALSE(exists(here));
    EXPECT_TRUE(exists(elsewhere));
}

// The age.

TEST_F(AutomaticCleanupTest, KeepsWhatIsExactlyThirtyDaysOld)
{
    const auto exactly = makeFile(optimized / "exactly.png", limit);
    const auto justOlder = makeFile(optimized / "older.png", limit + 1us);
    const auto aSecondOlder = makeFile(optimized / "second.png", limit + 1s);
    const auto younger = makeFile(optimized / "younger.png", limit - 1s);
    check();
    EXPECT_TRUE(exists(exactly));
    EXPECT_FALSE(exists(justOlder));
    EXPECT_FALSE(exists(aSecondOlder));
    EXPECT_TRUE(exists(younger));
}

TEST_F(AutomaticCleanupTest, KeepsOriginalsThatAreExactlyThirtyDaysOld)
{
    set("autoCleanupOriginalsEnabled", {true});
    const auto exactly = makeFile(originals / "Screenshot 1.png", limit);
    const auto aSecondOlder = makeFile(originals / "Screenshot 2.png", limit + 1s);
    check();
    EXPECT_TRUE(exists(exactly));
    EXPECT_FALSE(exists(aSecondOlder));
}

TEST_F(AutomaticCleanupTest, KeepsWhatComesFromTheFuture)
{
    const auto future = makeFile(optimized / "future.png", -limit);
    check();
    EXPECT_TRUE(exists(future));
}

TEST_F(AutomaticCleanupTest, KeepsWhoseAgeCannotBeTold)
{
    desktop.files.setCreationDate(old, std::nullopt);
    check();
    EXPECT_TRUE(exists(old));
    EXPECT_THAT(forgotten, IsEmpty());
}

// What counts.

TEST_F(AutomaticCleanupTest, DeletesEveryKindOfEntryAmongTheCopies)
{
    const auto hidden = makeFile(optimized / ".hidden");
    const auto text = makeFile(optimized / "notes.txt");
    check();
    EXPECT_FALSE(exists(hidden));
    EXPECT_FALSE(exists(text));
}

TEST_F(AutomaticCleanupTest, DeletesAFolderAmongTheCopiesWithAllItHolds)
{
    makeFile(optimized / "folder/young.png", 0s);
    desktop.files.setCreationDate(optimized / "folder", desktop.clock.wallNow() - limit - 1s);
    check();
    EXPECT_FALSE(exists(optimized / "folder"));
    EXPECT_FALSE(exists(optimized / "folder/young.png"));
}

TEST_F(AutomaticCleanupTest, KeepsWhatLiesInAYoungFolder)
{
    const auto below = makeFile(optimized / "folder/Screenshot 1.png");
    check();
    EXPECT_TRUE(exists(below));
}

TEST_F(AutomaticCleanupTest, DeletesOriginalsByNameAndExtension)
{
    set("autoCleanupOriginalsEnabled", {true});
    for (const char* name :
         {"Screenshot 1.png", "Screenshot 1.PNG", "Screenshot 1.jpg", "Screenshot 1.JpEg",
          "Screen Shot 1.png", "Screenshot 2026-01-05 at 10.31.12 (2).png", "Screenshot .png"}) {
        const auto original = makeFile(originals / name);
        check();
        EXPECT_FALSE(exists(original)) << name;
    }
}

TEST_F(AutomaticCleanupTest, KeepsOriginalsOfOtherNames)
{
    set("autoCleanupOriginalsEnabled", {true});
    for (const char* name :
         {"screenshot 1.png", "SCREENSHOT 1.png", "Screenshot.png", "Screenshot_1.png",
          "Screenshot-1.png", "ScreenShot 1.png", "My Screenshot 1.png", ".Screenshot 1.png",
          "Screen Recording 1.mov", "Screenshot 1.mov", "Screenshot 1.gif", "Screenshot 1",
          "Screenshot 1.png.part", "photo.png"}) {
        const auto original = makeFile(originals / name);
        check();
        EXPECT_TRUE(exists(original)) << name;
    }
}

TEST_F(AutomaticCleanupTest, KeepsWhatOnlyTheDesktopsToolsNameSo)
{
    set("autoCleanupOriginalsEnabled", {true});
    desktop.settings.screenshotNamePatterns = {"Bildschirmfoto .*"};
    const auto original = makeFile(originals / "Bildschirmfoto 1.png");
    check();
    EXPECT_TRUE(exists(original));
}

// Failures.

TEST_F(AutomaticCleanupTest, GoesOnWithoutAFolder)
{
    set("autoCleanupOriginalsEnabled", {true});
    desktop.files.makeUnlistable(optimized);
    const auto original = makeFile(originals / "Screenshot 1.png");
    check();
    EXPECT_TRUE(exists(old));
    EXPECT_FALSE(exists(original));

    desktop.files.makeUnlistable(originals);
    forgotten.clear();
    check();
    EXPECT_THAT(forgotten, IsEmpty());
}

TEST_F(AutomaticCleanupTest, ForgetsWhatCouldNotBeDeleted)
{
    desktop.files.makeReadOnly(optimized);
    check();
    EXPECT_TRUE(exists(old));
    EXPECT_THAT(forgotten, ElementsAre(AutomaticCleanup::Paths{old}));
}

TEST_F(AutomaticCleanupTest, SaysNothing)
{
    desktop.files.makeReadOnly(optimized);
    check();
    EXPECT_THAT(desktop.console.lines, IsEmpty());
    EXPECT_EQ(desktop.dispatch.timerCount(), 0u); // no toast
}

// What others hear.

TEST_F(AutomaticCleanupTest, TellsOfAllThatWasDeletedOnceAndAfterTheCheck)
{
    set("autoCleanupOriginalsEnabled", {true});
    const auto second = makeFile(optimized / "Screenshot 2.png");
    const auto original = makeFile(originals / "Screenshot 1.png");
    makeFile(originals / "Screenshot 2.png", 0s);
    cleanup.performCleanupIfNeeded();
    EXPECT_THAT(forgotten, IsEmpty());
    desktop.dispatch.runMain();
    EXPECT_THAT(forgotten, ElementsAre(AutomaticCleanup::Paths{old, second, original}));
}

TEST_F(AutomaticCleanupTest, TellsNothingIfNothingWasDeleted)
{
    desktop.files.remove(old);
    cleanup.performCleanupIfNeeded();
    desktop.dispatch.runMain();
    EXPECT_THAT(forgotten, IsEmpty());
}

TEST_F(AutomaticCleanupTest, TellsNothingOnceItIsGone)
{
    auto passing = std::make_unique<AutomaticCleanup>(
        surroundings, [](const auto&) { FAIL() << "told by one who is gone"; });
    passing->performCleanupIfNeeded();
    EXPECT_FALSE(exists(old));
    passing.reset();
    desktop.dispatch.runMain();
}

// The timer.

TEST_F(AutomaticCleanupTest, ChecksFirstAfterThirtySeconds)
{
    cleanup.startCleanupTimer();
    desktop.dispatch.advance(29'999ms);
    EXPECT_TRUE(exists(old));
    desktop.dispatch.advance(1ms);
    EXPECT_FALSE(exists(old));
}

TEST_F(AutomaticCleanupTest, ChecksEveryThirtySeconds)
{
    cleanup.startCleanupTimer();
    // Past its age a second after the second check, so at the third.
    const auto ripening = makeFile(optimized / "ripening.png", limit - 61s);
    desktop.dispatch.advance(60s);
    EXPECT_TRUE(exists(ripening));
    desktop.dispatch.advance(29'999ms);
    EXPECT_TRUE(exists(ripening));
    desktop.dispatch.advance(1ms);
    EXPECT_FALSE(exists(ripening));
}

TEST_F(AutomaticCleanupTest, TriesAgainAtTheNextCheckWhatCouldNotBeDeleted)
{
    desktop.files.makeReadOnly(optimized);
    cleanup.startCleanupTimer();
    desktop.dispatch.advance(60s);
    EXPECT_EQ(forgotten.size(), 2u);
}

TEST_F(AutomaticCleanupTest, GoesByTheSwitchesAtTheTimeOfTheCheck)
{
    set("autoCleanupEnabled", {false});
    cleanup.startCleanupTimer();
    desktop.dispatch.advance(30s);
    set("autoCleanupEnabled", {true});
    desktop.dispatch.advance(29'999ms);
    EXPECT_TRUE(exists(old));
    desktop.dispatch.advance(1ms);
    EXPECT_FALSE(exists(old));
}

TEST_F(AutomaticCleanupTest, HasOneTimerHoweverOftenItIsStarted)
{
    cleanup.startCleanupTimer();
    cleanup.startCleanupTimer();
    EXPECT_EQ(desktop.dispatch.timerCount(), 1u);
    cleanup.stop();
    EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
}

} // namespace
} // namespace tallowbay
