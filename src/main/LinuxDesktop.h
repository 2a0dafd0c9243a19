#pragma once

#include "platform/DesktopSettings.h"
#include "platform/Platform.h"
#include "platform/Processes.h"
#include "platform/linux/InotifyFileEvents.h"
#include "platform/linux/InotifyFolderEvents.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/LinuxDesktopSettings.h"
#include "platform/linux/LinuxResources.h"
#include "platform/linux/PosixFileSystem.h"
#include "platform/linux/PosixProcesses.h"
#include "platform/linux/StdoutConsole.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/X11Hotkeys.h"
#include "platform/linux/X11KeyPoster.h"
#include "platform/linux/X11KeyTap.h"
#include "platform/linux/X11Keyboard.h"
#include "platform/linux/X11Pasteboard.h"
#include "platform/linux/X11Permissions.h"
#include "platform/linux/X11Session.h"
#include "platform/linux/ocr/TesseractRecognizer.h"
#include "platform/qt/AppcastUpdater.h"
#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtDispatch.h"
#include "platform/qt/QtImageCodec.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/QtStatusBar.h"
#include "platform/qt/QtTextMeasurer.h"
#include "views/QtToastViews.h"

#include <memory>
#include <stdexcept>

namespace tallowbay {

// Says what is missing, for people.
class DisplayUnusable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Every backend of the program on an X11 desktop, in an order in which each may use those before
// it. Needs the QApplication; its users end before it does.
class LinuxDesktop {
public:
    // Throws DisplayUnusable where the display lacks what the program cannot do without.
    LinuxDesktop();

    Platform platform();

    // The main loop. Returns the exit status.
    int run() { return application.run(); }

    // Waits for the background work that is under way, which uses the other backends. To be called
    // when everyone has stopped, before this object goes. A tool that waits for the user is ended.
    void finishBackgroundWork();

private:
    qt::QtDispatch dispatch;
    std::unique_ptr<linux_desktop::X11Session> session;
    linux_desktop::SystemClock clock;
    linux_desktop::StdoutConsole console;
    linux_desktop::PosixFileSystem fileSystem;
    linux_desktop::InotifyFileEvents fileEvents{dispatch};
    linux_desktop::InotifyFolderEvents folderEvents{dispatch};
    linux_desktop::PosixProcesses processes;
    linux_desktop::LinuxResources resources;
    const ToolPaths tools;
    qt::QtImageCodec imageCodec;
    linux_desktop::TesseractRecognizer textRecognizer{dispatch};
    linux_desktop::JsonUserDefaultsStore defaults;
    linux_desktop::LinuxDesktopSettings screenshotSettings;
    const DesktopSettings desktopSettings;
    linux_desktop::X11Pasteboard pasteboard;
    linux_desktop::X11Keyboard keyboard;
    linux_desktop::X11KeyTap keyTap;
    linux_desktop::X11KeyPoster keyPoster;
    linux_desktop::X11Hotkeys hotkeys;
    linux_desktop::X11Permissions permissions;
    qt::QtStatusBar statusBar;
    qt::QtAlerts alerts;
    qt::AppcastUpdater updater;
    qt::QtApplication application;
    qt::QtScreens screens;
    qt::QtTextMeasurer textMeasurer;
    views::QtToastViews toastViews;
};

} // namespace tallowbay
