#include "app/AppDelegate.h"

#include "editor/EditorStrip.h"
#include "platform/Application.h"
#include "platform/FileSystem.h"
#include "platform/Pasteboard.h"
#include "platform/Permissions.h"
#include "platform/Resources.h"
#include "platform/Updater.h"
#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"

namespace tallowbay {

namespace {

constexpr auto runningTitle = "Tallowbay is running";

// A template image, which the platform tints to suit the bar, or the program's initials.
StatusButton makeStatusButton(const Resources& resources)
{
    if (resources.hasImage("MenubarIcon"))
        return {"MenubarIcon", 18, {}};
    return {{}, 0, "TB"};
}

// The windows of these commands are still to come.
bool isAvailable(Command command)
{
    return command != Command::settings && command != Command::about;
}

MenuItem makeItem(std::string title, std::function<void()> action)
{
    MenuItem item;
    item.title = std::move(title);
    item.action = std::move(action);
    return item;
}

} // namespace

AppDelegate::AppDelegate(const Platform& platform, Views& views)
    : platform(platform)
    , views(views)
    , location(platform.defaults, platform.fileSystem, platform.desktop)
    , toastPresenter(platform.dispatch, platform.screens, platform.textMeasurer, views)
    , toasts(platform.defaults.standard(), toastPresenter)
    , pasteWatcher(
          platform,
          [this] {
              pasteRest.expectPaste();
              screenshotBatch.handlePaste();
          })
    , pasteRest(
          platform, toasts, [this](const auto& files) { screenshotBatch.replaceClipboard(files); },
          [this] { pasteWatcher.firePaste(); })
    , screenshotBatch(platform, toasts, editorSlot, [this] { firePaste(); })
    , ocrTrigger(platform, toasts, screenshotBatch)
    , editorOpener(platform, views, toasts, screenshotBatch, editorSlot)
    , watcher(platform, location)
    , hotkeyCenter(
          platform.dispatch, platform.hotkeys, platform.defaults.standard(), hotkeyActions())
    , cleanup(
          {platform.dispatch, platform.clock, platform.fileSystem, platform.defaults.standard(),
           location},
          [this](const auto& expired) { forgetExpired(expired); })
    , locationPoll(platform, location, watcher, [this] { return onboardingVisible(); })
    , outputFolderWatcher(platform, screenshotBatch, editorSlot)
{
    pasteWatcher.onKey = [this] { pasteRest.interrupt(); };
    pasteRest.onRunning = [this](bool runs) { pasteWatcher.tellOfKeys(runs); };
}

void AppDelegate::firePaste()
{
    pasteRest.expectPaste();
    pasteWatcher.firePaste();
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    setupMenuBar();
    if (boolValue(platform.defaults.standard(), preference::onboardingCompleted))
        startMainFeatures();
    else
        showSetupFlow();
}

void AppDelegate::showSetupFlow()
{
    onboardingWindow = std::make_unique<OnboardingWindow>(platform, views);
    onboardingWindow->onCompleted = [this] {
        onboardingWindow.reset();
        startMainFeatures();
    };
    onboardingWindow->show();
}

void AppDelegate::startMainFeatures()
{
    if (std::exchange(mainFeaturesStarted, true))
        return;
    watcher.onScreenshotDetected = [this](const std::filesystem::path& file) {
        screenshotBatch.acceptScreenshot(file);
    };
    watcher.start();
    pasteWatcher.startPasteWatcher();
    hotkeyCenter.start();
    cleanup.startCleanupTimer();
    outputFolderWatcher.startDirectoryWatcher();
    locationPoll.startLocationPollTimer();
}

void AppDelegate::applicationWillTerminate()
{
    pasteWatcher.disableEventTap();
    watcher.stop();
    screenshotBatch.abandonJobs();
    screenshotBatch.clearTallowbayClipboard();
    platform.pasteboard.handOver(std::chrono::seconds(1)); // recognised text outlives us
    pasteWatcher.stopPolling();
    cleanup.stop();
    locationPoll.stop();
    outputFolderWatcher.stop();
    hotkeyCenter.stop();
    // Last, since it may take a while. What was hidden must not come back with the next start.
    if (EditorStrip* strip = editorSlot.strip())
        strip->finishWriting(std::chrono::seconds(10));
}

CommandResult AppDelegate::perform(Command command)
{
    if (!isAvailable(command))
        return CommandResult::unavailable;
    const bool inMenu = command == Command::settings || command == Command::about
        || command == Command::quit; // and the menu is there from the start
    if (!inMenu && !mainFeaturesStarted)
        return CommandResult::setupFirst;
    return carryOut(command);
}

CommandResult AppDelegate::carryOut(Command command)
{
    switch (command) {
    case Command::ocr:
        return ocrTrigger.triggerOCR() ? CommandResult::done : CommandResult::screenHidden;
    case Command::undo:
        screenshotBatch.undoLastScreenshot();
        break;
    case Command::clear:
        screenshotBatch.clearAllScreenshots();
        break;
    case Command::quit:
        platform.application.terminate();
        break;
    case Command::open:
        openAnnotationWindow(false);
        break;
    case Command::settings:
    case Command::about:
        break;
    }
    return CommandResult::done;
}

void AppDelegate::activate()
{
    if (onboardingVisible())
        onboardingWindow->show();
    else
        toasts.show(runningTitle);
}

void AppDelegate::openAnnotationWindow(bool showSettings)
{
    editorOpener.openAnnotationWindow(showSettings);
}

ProgramStatus AppDelegate::status() const
{
    ProgramStatus status;
    status.setupDone = mainFeaturesStarted;
    status.places = watcher.watchedPlaces();
    for (const auto& place : status.places) {
        if (!platform.fileSystem.isDirectory(place.place.folder))
            status.absentPlaces.push_back(place.place.folder);
    }
    status.lastNoticed = watcher.lastNoticed();
    status.hotkeys = hotkeyStatus();
    status.troubles = troubles();
    status.now = platform.clock.wallNow();
    status.home = platform.fileSystem.homeFolder();
    return status;
}

std::vector<ProgramStatus::Hotkey> AppDelegate::hotkeyStatus() const
{
    const auto statusOf = [this](std::string purpose, HotkeyTarget target) {
        return ProgramStatus::Hotkey{
            std::move(purpose), hotkeyCenter.config(target), hotkeyCenter.working(target)};
    };
    return {
        statusOf("opens the editor", HotkeyTarget::openClose),
        statusOf("copies the text in a region", HotkeyTarget::ocr),
        statusOf("takes back the last screenshot", HotkeyTarget::undoLast),
        statusOf("clears all screenshots", HotkeyTarget::clearAll)};
}

std::vector<std::string> AppDelegate::troubles() const
{
    std::vector<std::string> found = watcher.nameProblems();
    if (location.targetIsClipboard())
        found.emplace_back("Screenshots go to the clipboard instead of a folder");
    const Permission keys = platform.permissions.accessibility();
    if (!keys.granted())
        found.push_back("Pastes are not seen: " + keys.reason);
    const Permission screen = platform.permissions.screenRecording();
    if (!screen.granted())
        found.push_back("Text is not extracted: " + screen.reason);
    return found;
}

HotkeyCenter::Actions AppDelegate::hotkeyActions()
{
    return {
        [this] { carryOut(Command::ocr); }, [this] { carryOut(Command::open); },
        [this] { carryOut(Command::undo); }, [this] { carryOut(Command::clear); }};
}

void AppDelegate::forgetExpired(const AutomaticCleanup::Paths& expired)
{
    if (EditorStrip* strip = editorSlot.strip())
        strip->removeExpiredURLs(expired);
    screenshotBatch.forget(expired);
}

void AppDelegate::setupMenuBar()
{
    statusItem.reset();
    StatusButton button = makeStatusButton(platform.resources);
    button.onMiddleClick = [this] { perform(Command::open); };
    statusItem = platform.statusBar.makeItem(button, makeMenu());
}

Menu AppDelegate::makeMenu()
{
    MenuItem quit = makeRow("Quit", Command::quit);
    quit.keyEquivalent = "q";
    quit.symbol = "xmark";
    return {
        makeItem(runningTitle, nullptr),
        MenuItem::makeSeparator(),
        makeRow("Settings", Command::settings),
        makeRow("About Tallowbay", Command::about),
        makeItem("Check for Updates...", [this] { platform.updater.checkForUpdates(); }),
        MenuItem::makeSeparator(),
        quit};
}

// Disabled where the command is not available.
MenuItem AppDelegate::makeRow(std::string title, Command command)
{
    if (!isAvailable(command))
        return makeItem(std::move(title), nullptr);
    return makeItem(std::move(title), [this, command] { carryOut(command); });
}

} // namespace tallowbay
