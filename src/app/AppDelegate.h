#pragma once

#include "app/LocationPoll.h"
#include "app/OutputFolderWatcher.h"
#include "app/PasteWatcher.h"
#include "app/ScreenshotBatch.h"
#include "app/ScreenshotWatcher.h"
#include "capture/ScreenshotLocation.h"
#include "platform/Lifetime.h"
#include "platform/Menu.h"
#include "platform/Platform.h"
#include "ui/ToastWindow.h"

#include <functional>
#include <memory>

namespace tallowbay {

// The application object of a program that lives in the menu bar or tray: owns every long-lived
// piece, decides the order in which they start and stop, and builds the menu.
//
// Thread: main queue; lives as long as the main loop runs.
class AppDelegate {
public:
    // The windows that the application opens. One that is missing has its menu row disabled.
    struct Windows {
        std::function<void(bool showSettings)> openAnnotationWindow;
        std::function<void()> openAbout;

        // Opens the first-run window; calls the completion once, on the main queue, when the user
        // is done with it.
        std::function<void(std::function<void()> completion)> showSetupFlow;
        std::function<bool()> onboardingVisible = [] { return false; };
    };

    AppDelegate(const Platform&, Windows);
    ~AppDelegate();

    void applicationDidFinishLaunching();

    // The shutdown sequence; may be called more than once. Nothing is written to disk.
    void applicationWillTerminate();

    // (Re)builds the status item and its menu.
    void setupMenuBar();

    // Starts the pipeline; a second call does nothing.
    void startMainFeatures();

    ScreenshotBatch& batch() { return screenshotBatch; }

private:
    Menu makeMenu();

    const Platform platform;
    Windows windows;
    ScreenshotLocation location;
    ToastPresenter toasts;
    PasteWatcher pasteWatcher;
    ScreenshotBatch screenshotBatch;
    ScreenshotWatcher watcher;
    LocationPoll locationPoll;
    OutputFolderWatcher outputFolderWatcher;
    std::unique_ptr<StatusItem> statusItem;
    bool mainFeaturesStarted = false;
    Lifetime lifetime;
};

} // namespace tallowbay
