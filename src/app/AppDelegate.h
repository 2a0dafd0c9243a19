#pragma once

#include "app/AutomaticCleanup.h"
#include "app/Command.h"
#include "app/EditorOpener.h"
#include "app/LocationPoll.h"
#include "app/OCRTrigger.h"
#include "app/OutputFolderWatcher.h"
#include "app/PasteRest.h"
#include "app/PasteWatcher.h"
#include "app/ScreenshotBatch.h"
#include "app/ScreenshotWatcher.h"
#include "app/StatusReport.h"
#include "capture/ScreenshotLocation.h"
#include "editor/EditorSlot.h"
#include "hotkeys/HotkeyCenter.h"
#include "onboarding/OnboardingWindow.h"
#include "platform/Menu.h"
#include "platform/Platform.h"
#include "platform/StatusBar.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"

#include <memory>

namespace tallowbay {

class Views;

// The application object of a program that lives in the menu bar or tray: owns every long-lived
// piece, decides the order in which they start and stop, and builds the menu.
//
// Thread: main queue; lives as long as the main loop runs.
class AppDelegate {
public:
    AppDelegate(const Platform&, Views&);
    ~AppDelegate();

    void applicationDidFinishLaunching();

    // The shutdown sequence; may be called more than once. Nothing is written to disk but edits
    // that are on their way into their files, for which it waits ten seconds at most. The
    // background must still work.
    void applicationWillTerminate();

    // (Re)builds the status item and its menu.
    void setupMenuBar();

    // Starts the pipeline; a second call does nothing.
    void startMainFeatures();

    // The one way to the editor: see EditorOpener.
    void openAnnotationWindow(bool showSettings);

    // How the program fares at this moment.
    ProgramStatus status() const;

    // Does what others ask for.
    CommandResult perform(Command);

    // The user has started the program again: shows him where it is. The setup comes to the front;
    // once that is done, a toast tells that the program runs.
    void activate();

    ScreenshotBatch& batch() { return screenshotBatch; }

    EditorSlot& editor() { return editorSlot; }

    HotkeyCenter& hotkeys() { return hotkeyCenter; }

private:
    void firePaste();
    void showSetupFlow();
    bool onboardingVisible() const { return onboardingWindow && onboardingWindow->visible(); }
    CommandResult carryOut(Command);
    std::vector<ProgramStatus::Hotkey> hotkeyStatus() const;
    std::vector<std::string> troubles() const;
    HotkeyCenter::Actions hotkeyActions();
    void forgetExpired(const AutomaticCleanup::Paths&);
    Menu makeMenu();
    MenuItem makeRow(std::string title, Command);

    const Platform platform;
    Views& views;
    ScreenshotLocation location;
    ToastPresenter toastPresenter;
    ToastGate toasts;
    EditorSlot editorSlot;
    PasteWatcher pasteWatcher;
    PasteRest pasteRest;
    ScreenshotBatch screenshotBatch;
    OCRTrigger ocrTrigger;
    EditorOpener editorOpener;
    ScreenshotWatcher watcher;
    HotkeyCenter hotkeyCenter;
    AutomaticCleanup cleanup;
    LocationPoll locationPoll;
    OutputFolderWatcher outputFolderWatcher;
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<OnboardingWindow> onboardingWindow; // until the setup is done
    bool mainFeaturesStarted = false;
};

} // namespace tallowbay
