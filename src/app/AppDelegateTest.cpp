#include "app/AppDelegate.h"

#include "app/TestEditorStrip.h"
#include "platform/headless/Desktop.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Paths = std::vector<std::filesystem::path>;
using Arguments = std::vector<std::string>;
using headless::optimized;

class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest()
    {
        desktop.files.create(desktop.tools.pngquant);
        desktop.processes.install(desktop.tools.pngquant, [this](const Arguments& arguments) {
            desktop.files.create(arguments.at(3), "small");
            return 0;
        });
    }

    void launch(bool onboarded = true)
    {
        desktop.defaults.standard().set("onboardingCompleted", {onboarded});
        app->applicationDidFinishLaunching();
        desktop.dispatch.runUntilIdle();
    }

    void screenshot(const std::string& name)
    {
        desktop.files.create(std::filesystem::path("/home/u/Desktop") / name, "large");
        desktop.dispatch.runUntilIdle();
    }

    void pressHotkey(KeyCode keyCode, HotkeyModifiers modifiers)
    {
        desktop.hotkeys.press(keyCode, modifiers);
        desktop.dispatch.runMain();
    }

    void paste()
    {
        desktop.keyTap.press(9, eventFlag::command);
        desktop.dispatch.runMain();
    }

    bool setupIsShown() const
    {
        return !views.onboardingWindows.empty() && views.onboardingWindows.back()->onScreen;
    }

    void completeSetup() { views.onboardingWindows.back()->logic->startTapped(); }

    void press(const std::string& title)
    {
        for (const MenuItem& item : desktop.statusBar.items.front().menu) {
            if (item.title == title)
                item.action();
        }
    }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    TestEditorStrip strip;
    std::unique_ptr<AppDelegate> app = std::make_unique<AppDelegate>(desktop.platform(), views);
};

TEST_F(AppDelegateTest, StartsItsWatchersAtLaunchOnceTheUserIsThroughTheSetup)
{
    launch();
    EXPECT_FALSE(setupIsShown());
    EXPECT_EQ(desktop.fileEvents.running().size(), 1u);
    EXPECT_TRUE(desktop.keyTap.running());
    EXPECT_EQ(desktop.folderEvents.runningCount(), 1u);
}

TEST_F(AppDelegateTest, ShowsTheSetupFirstAndProcessesNothingUntilItIsDone)
{
    launch(false);
    EXPECT_TRUE(setupIsShown());
    EXPECT_EQ(desktop.statusBar.items.size(), 1u);
    screenshot("Screenshot 1.png");
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_FALSE(desktop.keyTap.running());

    completeSetup();
    screenshot("Screenshot 2.png");
    EXPECT_EQ(desktop.pasteboard.files, Paths{optimized / "Screenshot 2.png"});
}

TEST_F(AppDelegateTest, TakesAnAbsentKeyForASetupThatIsNotDone)
{
    app->applicationDidFinishLaunching();
    EXPECT_TRUE(setupIsShown());
}

TEST_F(AppDelegateTest, StartsTheMainFeaturesOnce)
{
    launch();
    app->startMainFeatures();
    EXPECT_EQ(desktop.fileEvents.running().size(), 1u);
    EXPECT_EQ(desktop.keyTap.startCount, 1);
    EXPECT_EQ(desktop.folderEvents.runningCount(), 1u);
    EXPECT_EQ(desktop.hotkeys.registered().size(), 4u);
    EXPECT_EQ(desktop.dispatch.timerCount(), 2u); // the cleanup and the location poll
}

TEST_F(AppDelegateTest, TakesTheSetupOffTheScreenOnceItIsDone)
{
    launch(false);
    completeSetup();
    EXPECT_FALSE(setupIsShown());
    EXPECT_FALSE(views.onboardingWindows.back()->alive);
}

TEST_F(AppDelegateTest, EndsWhenTheSetupIsClosed)
{
    launch(false);
    views.onboardingWindows.back()->logic->windowClosed();
    desktop.dispatch.runMain();
    EXPECT_TRUE(desktop.application.ended());
}

TEST_F(AppDelegateTest, BringsTheSetupToTheFrontWhenItIsStartedAgain)
{
    launch(false);
    app->activate();
    EXPECT_EQ(views.onboardingWindows.size(), 1u);
    EXPECT_THAT(
        views.onboardingWindows.back()->journal, ElementsAre("key and front", "key and front"));
    EXPECT_THAT(views.messages(), IsEmpty());
}

TEST_F(AppDelegateTest, TellsThatItRunsWhenItIsStartedAgain)
{
    launch();
    app->activate();
    desktop.dispatch.runMain();
    EXPECT_THAT(views.messages(), ElementsAre("Tallowbay is running"));
}

TEST_F(AppDelegateTest, TakesTheSetupAlongWhenItEnds)
{
    launch(false);
    app.reset();
    EXPECT_FALSE(setupIsShown());
}

// The setup shows by itself whether screenshots go to the clipboard.
TEST_F(AppDelegateTest, DoesNotWarnOfTheClipboardTargetWhileTheSetupIsShown)
{
    desktop.defaults.open("com.apple.screencapture")->set("target", {"clipboard"});
    launch(false);
    app->startMainFeatures();
    desktop.dispatch.advance(500ms);
    EXPECT_FALSE(desktop.alerts.open());

    completeSetup();
    desktop.dispatch.advance(500ms);
    EXPECT_TRUE(desktop.alerts.open());
}

TEST_F(AppDelegateTest, BringsScreenshotsTogetherInOnePaste)
{
    launch();
    for (const char* name : {"Screenshot 1.png", "Screenshot 2.png", "Screenshot 3.png"})
        screenshot(name);
    EXPECT_EQ(
        desktop.pasteboard.files,
        (Paths{
            optimized / "Screenshot 1.png", optimized / "Screenshot 2.png",
            optimized / "Screenshot 3.png"}));
    paste();
    EXPECT_THAT(app->batch().urls(), IsEmpty());
    EXPECT_EQ(desktop.pasteboard.files.size(), 3u);
    EXPECT_THAT(desktop.keyPoster.journal, IsEmpty());
}

TEST_F(AppDelegateTest, PastesByItselfWhatWasPastedTooEarly)
{
    launch();
    desktop.files.create("/home/u/Desktop/Screenshot 1.png", "large");
    desktop.dispatch.runMain();
    desktop.keyTap.press(9, eventFlag::command);
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(desktop.keyPoster.journal.size(), 2u);
    EXPECT_EQ(desktop.pasteboard.files, Paths{optimized / "Screenshot 1.png"});
    EXPECT_THAT(app->batch().urls(), IsEmpty());
}

TEST_F(AppDelegateTest, PastesTheRestForAProgramThatTakesOneFileUntilTheUserPressesAKey)
{
    launch();
    for (const char* name : {"Screenshot 1.png", "Screenshot 2.png", "Screenshot 3.png"})
        screenshot(name);
    desktop.windowSystem.active = 5;
    desktop.windowSystem.classes[5] = "firefox-esr";
    paste();
    desktop.pasteboard.askForFiles();
    desktop.dispatch.advance(300ms);
    EXPECT_EQ(desktop.keyPoster.journal.size(), 2u);
    EXPECT_EQ(desktop.pasteboard.files.size(), 2u);
    desktop.pasteboard.askForFiles();
    desktop.keyTap.press(keyCode::a, 0);
    desktop.dispatch.advance(1s);
    EXPECT_EQ(desktop.keyPoster.journal.size(), 2u);
    EXPECT_EQ(desktop.pasteboard.files, Paths{optimized / "Screenshot 3.png"});
}

TEST_F(AppDelegateTest, HoldsAPasteOfTheRestWhileAnEditOfItIsBeingWritten)
{
    launch();
    for (const char* name : {"Screenshot 1.png", "Screenshot 2.png"})
        screenshot(name);
    desktop.windowSystem.active = 5;
    desktop.windowSystem.classes[5] = "firefox-esr";
    paste();
    desktop.pasteboard.askForFiles();
    desktop.dispatch.advance(300ms);
    desktop.keyTap.press(keyCode::a, 0);
    desktop.dispatch.advance(1s);
    ASSERT_EQ(desktop.pasteboard.files, Paths{optimized / "Screenshot 2.png"});

    app->editor().fill(strip);
    strip.beingWritten.insert(optimized / "Screenshot 2.png");
    paste();
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
}

TEST_F(AppDelegateTest, PastesTheRestAfterAPasteThatItFired)
{
    launch();
    screenshot("Screenshot 1.png");
    desktop.files.create("/home/u/Desktop/Screenshot 2.png", "large");
    desktop.dispatch.runMain();
    desktop.windowSystem.active = 5;
    desktop.windowSystem.classes[5] = "firefox-esr";
    desktop.keyTap.press(keyCode::v, eventFlag::command);
    desktop.dispatch.runMain();
    desktop.dispatch.advance(10s);
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(desktop.keyPoster.journal.size(), 2u);
    desktop.pasteboard.askForFiles();
    desktop.dispatch.advance(300ms);
    EXPECT_EQ(desktop.keyPoster.journal.size(), 4u);
}

TEST_F(AppDelegateTest, PrintsItsLinesInOrder)
{
    launch();
    screenshot("Screenshot 1.png");
    paste();
    EXPECT_THAT(
        desktop.console.lines,
        ElementsAre(
            "Paste watcher running (Cmd+V resets batch)", "✓ Screenshot 1.png → 0KB → 0KB",
            "Clipboard updated: 1 image(s)", ">>> resetBatch — clearing 1 URL(s), 0 OCR text(s)"));
}

TEST_F(AppDelegateTest, ChecksForTheClipboardTargetHalfASecondAfterTheStart)
{
    desktop.defaults.open("com.apple.screencapture")->set("target", {"clipboard"});
    launch();
    EXPECT_FALSE(desktop.alerts.open());
    desktop.dispatch.advance(500ms);
    EXPECT_TRUE(desktop.alerts.open());
}

// Hotkeys.

TEST_F(AppDelegateTest, RegistersItsHotkeysBetweenThePasteWatcherAndTheTimers)
{
    desktop.hotkeys.onChange = [this] {
        EXPECT_TRUE(desktop.keyTap.running());
        EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
        EXPECT_EQ(desktop.folderEvents.runningCount(), 0u);
    };
    launch();
    EXPECT_THAT(
        desktop.hotkeys.journal,
        ElementsAre("install", "register 1", "register 2", "register 4", "register 5"));
    desktop.hotkeys.onChange = nullptr;
}

TEST_F(AppDelegateTest, HasNoHotkeysDuringTheSetup)
{
    launch(false);
    EXPECT_FALSE(desktop.hotkeys.installed());
    completeSetup();
    EXPECT_EQ(desktop.hotkeys.registered().size(), 4u);
}

TEST_F(AppDelegateTest, UndoesTheLastScreenshotByHotkey)
{
    launch();
    screenshot("Screenshot 1.png");
    screenshot("Screenshot 2.png");
    pressHotkey(6, 0x1100);
    EXPECT_EQ(desktop.pasteboard.files, Paths{optimized / "Screenshot 1.png"});
    EXPECT_EQ(app->batch().urls(), Paths{optimized / "Screenshot 1.png"});
}

TEST_F(AppDelegateTest, ClearsTheBatchByHotkey)
{
    launch();
    screenshot("Screenshot 1.png");
    screenshot("Screenshot 2.png");
    pressHotkey(8, 0x1100);
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_THAT(app->batch().urls(), IsEmpty());
}

TEST_F(AppDelegateTest, ExtractsTextByHotkeyAndHoldsTheBatchMeanwhile)
{
    desktop.processes.install(desktop.tools.screencapture, [this](const Arguments& arguments) {
        const Bitmap bitmap(PixelSize{2, 2});
        desktop.files.create(arguments.at(1), *desktop.imageCodec.encodePng(bitmap));
        return 0;
    });
    desktop.textRecognizer.willFindLines({"Hello"});
    launch();
    screenshot("Screenshot 1.png");
    pressHotkey(7, 0x300);
    paste();
    EXPECT_EQ(app->batch().urls().size(), 1u);

    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(desktop.pasteboard.text, "Hello");
    paste();
    EXPECT_THAT(app->batch().urls(), IsEmpty());
}

TEST_F(AppDelegateTest, DoesNothingByHotkeyWhileOneIsRecorded)
{
    launch();
    screenshot("Screenshot 1.png");
    app->hotkeys().isRecordingHotkey = true;
    for (const auto& registration : desktop.hotkeys.registered())
        pressHotkey(registration.combination.first, registration.combination.second);
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u); // where text is extracted
    EXPECT_EQ(desktop.pasteboard.files.size(), 1u);
}

TEST_F(AppDelegateTest, DoesNothingByHotkeyWhereTheEditorIsMissing)
{
    launch();
    screenshot("Screenshot 1.png");
    pressHotkey(49, 0x800);
    EXPECT_EQ(app->batch().urls().size(), 1u);
    EXPECT_EQ(desktop.pasteboard.files.size(), 1u);
}

// Commands.

TEST_F(AppDelegateTest, DoesWhatOthersAskFor)
{
    launch();
    for (const char* name : {"Screenshot 1.png", "Screenshot 2.png", "Screenshot 3.png"})
        screenshot(name);
    EXPECT_EQ(app->perform(Command::undo), CommandResult::done);
    EXPECT_EQ(desktop.pasteboard.files.size(), 2u);
    EXPECT_EQ(app->perform(Command::clear), CommandResult::done);
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_EQ(app->perform(Command::ocr), CommandResult::done);
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 1u); // where text is extracted
    EXPECT_EQ(app->perform(Command::quit), CommandResult::done);
    desktop.dispatch.runMain();
    EXPECT_TRUE(desktop.application.ended());
}

TEST_F(AppDelegateTest, OpensTheEditorByHotkeyByCommandAndByAMiddleClickOnItsIcon)
{
    launch();
    pressHotkey(keyCode::space, hotkeyModifier::option);
    ASSERT_EQ(views.editors.size(), 1u);
    EXPECT_TRUE(views.editors[0]->onScreen);
    EXPECT_EQ(app->perform(Command::open), CommandResult::done); // which closes it
    desktop.dispatch.advance(150ms);
    EXPECT_FALSE(views.editors[0]->onScreen);
    desktop.statusBar.middleClick();
    EXPECT_TRUE(views.editors[0]->onScreen);
    EXPECT_EQ(views.editors.size(), 1u);
}

TEST_F(AppDelegateTest, OpensNoEditorBeforeTheSetupIsDone)
{
    launch(false);
    EXPECT_EQ(app->perform(Command::open), CommandResult::setupFirst);
    desktop.statusBar.middleClick();
    desktop.dispatch.runUntilIdle();
    EXPECT_TRUE(views.editors.empty());
    EXPECT_TRUE(views.loaders.empty());
}

TEST_F(AppDelegateTest, ShowsNewScreenshotsInTheEditorThatIsOpen)
{
    launch();
    app->openAnnotationWindow(false);
    desktop.dispatch.runUntilIdle();
    screenshot("Screenshot 1.png");
    EXPECT_EQ(app->editor().strip()->checkedURLs(), Paths{optimized / "Screenshot 1.png"});
    desktop.files.remove(optimized / "Screenshot 1.png");
    desktop.dispatch.advance(250ms);
    EXPECT_FALSE(app->editor().strip()->showsImages());
}

TEST_F(AppDelegateTest, SaysWhichCommandsItLacks)
{
    launch();
    for (const Command command : {Command::settings, Command::about})
        EXPECT_EQ(app->perform(command), CommandResult::unavailable);
    EXPECT_EQ(app->perform(Command::undo), CommandResult::done);
}

TEST_F(AppDelegateTest, SaysThatTheSessionHidesItsScreenFromTheExtractionOfText)
{
    desktop.permissions.refuseScreen(Permission::State::unavailable);
    launch();
    EXPECT_EQ(app->perform(Command::ocr), CommandResult::screenHidden);
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
}

TEST_F(AppDelegateTest, DoesDuringTheSetupWhatItsMenuDoes)
{
    launch(false);
    for (const Command command : {Command::ocr, Command::undo, Command::clear})
        EXPECT_EQ(app->perform(command), CommandResult::setupFirst);
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
    EXPECT_EQ(app->perform(Command::quit), CommandResult::done);
    desktop.dispatch.runMain();
    EXPECT_TRUE(desktop.application.ended());
    completeSetup();
    EXPECT_EQ(app->perform(Command::undo), CommandResult::done);
}

// Cleanup.

class AppDelegateCleanupTest : public AppDelegateTest {
protected:
    AppDelegateCleanupTest()
    {
        desktop.defaults.standard().set("autoCleanupEnabled", {true});
        launch();
    }

    void age(const std::string& name)
    {
        using std::chrono::days;
        desktop.files.setCreationDate(optimized / name, desktop.clock.wallNow() - days(31));
    }
};

TEST_F(AppDelegateCleanupTest, ForgetsADeletedScreenshotOfTheBatchAndKeepsThePasteboard)
{
    screenshot("Screenshot 1.png");
    screenshot("Screenshot 2.png");
    age("Screenshot 1.png");
    desktop.dispatch.advance(30s);
    EXPECT_FALSE(desktop.files.exists(optimized / "Screenshot 1.png"));
    EXPECT_EQ(app->batch().urls(), Paths{optimized / "Screenshot 2.png"});
    EXPECT_EQ(desktop.pasteboard.files.size(), 2u);
}

TEST_F(AppDelegateCleanupTest, ForgetsADeletedScreenshotInTheEditor)
{
    app->editor().fill(strip);
    screenshot("Screenshot 1.png");
    screenshot("Screenshot 2.png");
    age("Screenshot 2.png");
    desktop.dispatch.advance(30s);
    EXPECT_EQ(strip.images, Paths{optimized / "Screenshot 1.png"});
}

TEST_F(AppDelegateCleanupTest, ForgetsAScreenshotThatCannotBeDeleted)
{
    app->editor().fill(strip);
    screenshot("Screenshot 1.png");
    age("Screenshot 1.png");
    desktop.files.makeReadOnly(optimized);
    desktop.dispatch.advance(30s);
    EXPECT_TRUE(desktop.files.exists(optimized / "Screenshot 1.png"));
    EXPECT_THAT(strip.images, IsEmpty());
    EXPECT_THAT(app->batch().urls(), IsEmpty());
}

// Menu.

TEST_F(AppDelegateTest, HasAMenuWithTheseRows)
{
    app->setupMenuBar();
    const Menu& menu = desktop.statusBar.items.front().menu;
    ASSERT_EQ(menu.size(), 7u);
    const char* titles[] = {"Tallowbay is running", "", "Settings", "About Tallowbay",
                            "Check for Updates...", "", "Quit"};
    for (std::size_t row = 0; row < menu.size(); ++row) {
        EXPECT_EQ(menu[row].title, titles[row]);
        EXPECT_EQ(menu[row].separator, row == 1 || row == 5);
        EXPECT_EQ(menu[row].keyEquivalent, row == 6 ? "q" : "");
        EXPECT_EQ(menu[row].symbol, row == 6 ? "xmark" : "");
    }
    EXPECT_FALSE(menu[0].action);
}

TEST_F(AppDelegateTest, ShowsATemplateImageOf18Points)
{
    app->setupMenuBar();
    EXPECT_EQ(desktop.statusBar.items.front().button.imageName, "MenubarIcon");
    EXPECT_EQ(desktop.statusBar.items.front().button.imageSizePoints, 18);
}

TEST_F(AppDelegateTest, ShowsItsInitialsWithoutTheImage)
{
    desktop.resources.images.clear();
    app->setupMenuBar();
    EXPECT_EQ(desktop.statusBar.items.front().button.imageName, "");
    EXPECT_EQ(desktop.statusBar.items.front().button.title, "TB");
}

TEST_F(AppDelegateTest, HasOneStatusItemAfterSettingUpTheMenuTwice)
{
    app->setupMenuBar();
    app->setupMenuBar();
    EXPECT_EQ(desktop.statusBar.items.size(), 1u);
}

TEST_F(AppDelegateTest, ActsOnItsMenu)
{
    app->setupMenuBar();
    press("Check for Updates...");
    EXPECT_EQ(desktop.updater.checks, 1);
    press("Quit");
    desktop.dispatch.runMain();
    EXPECT_TRUE(desktop.application.ended());
}

TEST_F(AppDelegateTest, DisablesTheRowsOfWindowsThatAreMissing)
{
    app->setupMenuBar();
    EXPECT_FALSE(desktop.statusBar.items.front().menu[2].action);
    EXPECT_FALSE(desktop.statusBar.items.front().menu[3].action);
}

// Quit.

TEST_F(AppDelegateTest, StopsEverythingAtQuit)
{
    launch();
    app->applicationWillTerminate();
    EXPECT_FALSE(desktop.keyTap.running());
    EXPECT_THAT(desktop.fileEvents.running(), IsEmpty());
    EXPECT_EQ(desktop.folderEvents.runningCount(), 0u);
    EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
    EXPECT_THAT(desktop.hotkeys.registered(), IsEmpty());
}

TEST_F(AppDelegateTest, GivesItsHotkeysBackLastAtQuit)
{
    launch();
    desktop.hotkeys.journal.clear();
    desktop.hotkeys.onChange = [this] {
        EXPECT_FALSE(desktop.keyTap.running());
        EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
        EXPECT_EQ(desktop.folderEvents.runningCount(), 0u);
    };
    app->applicationWillTerminate();
    EXPECT_THAT(
        desktop.hotkeys.journal,
        ElementsAre("unregister 1", "unregister 2", "unregister 4", "unregister 5"));
    desktop.hotkeys.onChange = nullptr;
}

TEST_F(AppDelegateTest, StopsWaitingForThePermissionAtQuit)
{
    desktop.permissions.refuseKeys();
    launch();
    EXPECT_EQ(desktop.dispatch.timerCount(), 3u);
    app->applicationWillTerminate();
    EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
}

TEST_F(AppDelegateTest, LeavesForeignFilesOnThePasteboardAtQuit)
{
    launch();
    screenshot("Screenshot 1.png");
    desktop.pasteboard.copyElsewhere({"/etc/hostname"});
    app->applicationWillTerminate();
    EXPECT_EQ(desktop.pasteboard.files, Paths{"/etc/hostname"});
}

TEST_F(AppDelegateTest, HandsARecognisedTextToTheDesktopAtQuit)
{
    launch();
    desktop.pasteboard.writeText("recognised");
    app->applicationWillTerminate();
    EXPECT_EQ(desktop.pasteboard.keptText, "recognised");
}

TEST_F(AppDelegateTest, HandsNoTextOfOthersToTheDesktopAtQuit)
{
    launch();
    desktop.pasteboard.copyTextElsewhere("copied elsewhere");
    app->applicationWillTerminate();
    EXPECT_EQ(desktop.pasteboard.keptText, "");
    EXPECT_EQ(desktop.pasteboard.text, "copied elsewhere");
}

TEST_F(AppDelegateTest, TakesTheBatchOffThePasteboardAtQuit)
{
    launch();
    screenshot("Screenshot 1.png");
    app->applicationWillTerminate();
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
}

TEST_F(AppDelegateTest, WritesNothingToDiskAtQuit)
{
    launch();
    screenshot("Screenshot 1.png");
    int changes = 0;
    const auto listening = desktop.files.listen([&](auto&, auto) { ++changes; });
    app->applicationWillTerminate();
    EXPECT_EQ(changes, 0);
}

TEST_F(AppDelegateTest, WaitsAtQuitForTheEditsOnTheirWayWhenAllElseHasStopped)
{
    using namespace std::chrono_literals;
    launch();
    TestEditorStrip strip;
    app->editor().fill(strip);
    std::vector<std::chrono::milliseconds> limits;
    strip.onFinishWriting = [&](std::chrono::milliseconds limit) {
        limits.push_back(limit);
        EXPECT_FALSE(desktop.keyTap.running());
        EXPECT_THAT(desktop.hotkeys.registered(), IsEmpty());
    };
    app->applicationWillTerminate();
    EXPECT_THAT(limits, ElementsAre(10s));
}

} // namespace
} // namespace tallowbay
