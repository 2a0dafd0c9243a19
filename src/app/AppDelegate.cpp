#include "app/AppDelegate.h"

#include "editor/EditorStrip.h"
#include "platform/Application.h"
#include "platform/Processes.h"
#include "platform/UserDefaults.h"

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
    , toasts(platform.dispatch, platform.screens, platform.textMeasurer, platform.toastViews)
    , pasteWatcher(platform, [this] { screenshotBatch.handlePaste(); })
    , screenshotBatch(
          platform, toasts,
          {[this] { pasteWatcher.firePaste(); },
           [this] { return this->windows.annotationWindow(); }})
    , ocrTrigger(platform, toasts, screenshotBatch)
    , watcher(platform, location)
    , hotkeyCenter(platform.hotkeys, platform.defaults.standard(), hotkeyActions())
    , cleanup(platform, location, [this](const auto& expired) { forgetExpired(expired); })
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
    screenshotBatch.clearTallowbayClipboard();
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
