#include "app/AppDelegate.h"

#include "editor/EditorStrip.h"
#include "platform/Application.h"
#include "platform/Pasteboard.h"
#include "platform/Resources.h"
#include "platform/Updater.h"
#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"

namespace tallowbay {

namespace {

// A template image, which the platform tints to suit the bar, or the program's initials.
StatusButton makeStatusButton(const Resources& resources)
{
    if (resources.hasImage("MenubarIcon"))
        return {"MenubarIcon", 18, {}};
    return {{}, 0, "TB"};
}

MenuItem makeItem(std::string title, std::function<void()> action)
{
    MenuItem item;
    item.title = std::move(title);
    item.action = std::move(action);
    return item;
}

} // namespace

AppDelegate::AppDelegate(const Platform& platform, Windows windows)
    : platform(platform)
    , windows(std::move(windows))
    , location(platform.defaults, platform.fileSystem, platform.desktop)
    , toastPresenter(
          platform.dispatch, platform.screens, platform.textMeasurer, platform.toastViews)
    , toasts(platform.defaults.standard(), toastPresenter)
    , pasteWatcher(platform, [this] { screenshotBatch.handlePaste(); })
    , screenshotBatch(
          platform, toasts,
          {[this] { pasteWatcher.firePaste(); },
           [this] { return this->windows.annotationWindow(); }})
    , ocrTrigger(platform, toasts, screenshotBatch)
    , watcher(platform, location)
    , hotkeyCenter(platform.hotkeys, platform.defaults.standard(), hotkeyActions())
    , cleanup(
          {platform.dispatch, platform.clock, platform.fileSystem, platform.defaults.standard(),
           location},
          [this](const auto& expired) { forgetExpired(expired); })
    , locationPoll(
          platform, location, watcher, [this] { return this->windows.onboardingVisible(); })
    , outputFolderWatcher(
          platform, screenshotBatch, [this] { return this->windows.annotationWindow(); })
{
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    setupMenuBar();
    if (boolValue(platform.defaults.standard(), "onboardingCompleted", false))
        startMainFeatures();
    else if (windows.showSetupFlow)
        windows.showSetupFlow(lifetime.guard([this] { startMainFeatures(); }));
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
}

void AppDelegate::openAnnotationWindow(bool showSettings)
{
    if (windows.openAnnotationWindow)
        windows.openAnnotationWindow(showSettings);
}

CommandResult AppDelegate::perform(Command command)
{
    if (!has(command))
        return CommandResult::unavailable;
    const bool inMenu = command == Command::settings || command == Command::about
        || command == Command::quit; // and the menu is there from the start
    if (!inMenu && !mainFeaturesStarted)
        return CommandResult::setupFirst;
    carryOut(command);
    return CommandResult::done;
}

bool AppDelegate::has(Command command) const
{
    if (command == Command::about)
        return static_cast<bool>(windows.openAbout);
    const bool inEditor = command == Command::open || command == Command::settings;
    return !inEditor || windows.openAnnotationWindow;
}

void AppDelegate::carryOut(Command command)
{
    switch (command) {
    case Command::open:
        return openAnnotationWindow(false);
    case Command::ocr:
        return triggerOCR();
    case Command::undo:
        return screenshotBatch.undoLastScreenshot();
    case Command::clear:
        return screenshotBatch.clearAllScreenshots();
    case Command::settings:
        return openAnnotationWindow(true);
    case Command::about:
        return windows.openAbout();
    case Command::quit:
        return platform.application.terminate();
    }
}

HotkeyCenter::Actions AppDelegate::hotkeyActions()
{
    return {
        [this] { triggerOCR(); }, [this] { openAnnotationWindow(false); },
        [this] { screenshotBatch.undoLastScreenshot(); },
        [this] { screenshotBatch.clearAllScreenshots(); }};
}

void AppDelegate::forgetExpired(const AutomaticCleanup::Paths& expired)
{
    if (EditorStrip* editor = windows.annotationWindow())
        editor->removeExpiredURLs(expired);
    screenshotBatch.forget(expired);
}

void AppDelegate::setupMenuBar()
{
    statusItem.reset();
    statusItem = platform.statusBar.makeItem(makeStatusButton(platform.resources), makeMenu());
}

Menu AppDelegate::makeMenu()
{
    MenuItem settings = makeItem("Settings", nullptr);
    if (windows.openAnnotationWindow)
        settings.action = [this] { windows.openAnnotationWindow(true); };
    MenuItem about = makeItem("About Tallowbay", nullptr);
    if (windows.openAbout)
        about.action = [this] { windows.openAbout(); };
    MenuItem quit = makeItem("Quit", [this] { platform.application.terminate(); });
    quit.keyEquivalent = "q";
    quit.symbol = "xmark";
    return {
        makeItem("Tallowbay is running", nullptr),
        MenuItem::makeSeparator(),
        settings,
        about,
        makeItem("Check for Updates...", [this] { platform.updater.checkForUpdates(); }),
        MenuItem::makeSeparator(),
        quit};
}

} // namespace tallowbay
