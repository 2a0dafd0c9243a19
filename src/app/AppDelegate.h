#pragma once

#include "app/AutomaticCleanup.h"
#include "app/Command.h"
#include "app/LocationPoll.h"
#include "app/OCRTrigger.h"
#include "app/OutputFolderWatcher.h"
#include "app/PasteWatcher.h"
#include "app/ScreenshotBatch.h"
#include "app/ScreenshotWatcher.h"
#include "base/Lifetime.h"
#include "capture/ScreenshotLocation.h"
#include "hotkeys/HotkeyCenter.h"
#include "platform/Menu.h"
#include "platform/Platform.h"
#include "platform/StatusBar.h"
#include "ui/ToastGate.h"
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

        // The strip of the editor; null until it is opened for the first time.
        std::function<EditorStrip*()> annotationWindow = [] { return nullptr; };
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

    // Opens the editor, or brings it to the front; nothing if there is no editor.
    void openAnnotationWindow(bool showSettings);

    // Extracts the text of a region that the user selects.
    void triggerOCR() { ocrTrigger.triggerOCR(); }

    // Does what others ask for.
    CommandResult perform(Command);

    ScreenshotBatch& batch() { return screenshotBatch; }

    HotkeyCenter& hotkeys() { return hotkeyCenter; }

private:
    bool has(Command) const;
    void carryOut(Command);
    HotkeyCenter::Actions hotkeyActions();
    void forgetExpired(const AutomaticCleanup::Paths&);
    Menu makeMenu();

    const Platform platform;
    Windows windows;
    ScreenshotLocation location;
    ToastPresenter toastPresenter;
    ToastGate toasts;
    PasteWatcher pasteWatcher;
    ScreenshotBatch screenshotBatch;
    OCRTrigger ocrTrigger;
    ScreenshotWatcher watcher;
    HotkeyCenter hotkeyCenter;
    AutomaticCleanup cleanup;
    LocationPoll locationPoll;
    OutputFolderWatcher outputFolderWatcher;
    std::unique_ptr<StatusItem> statusItem;
    bool mainFeaturesStarted = false;
    Lifetime lifetime;
};

} // namespace tallowbay
