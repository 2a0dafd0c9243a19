#pragma once

#include "platform/DesktopSettings.h"
#include "platform/Platform.h"
#include "platform/ToolPaths.h"
#include "platform/posix/LinuxResources.h"
#include "platform/posix/PosixProcesses.h"
#include "platform/posix/StdoutConsole.h"
#include "platform/posix/SystemClock.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "platform/posix/preferences/JsonUserDefaults.h"
#include "platform/posix/preferences/LinuxDesktopSettings.h"
#include "platform/posix/watch/InotifyFileEvents.h"
#include "platform/posix/watch/InotifyFolderEvents.h"
#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtDispatch.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/graphics/QtImageCodec.h"
#include "platform/qt/graphics/QtTextMeasurer.h"
#include "platform/qt/tray/QtStatusBar.h"
#include "platform/qt/update/AppcastUpdater.h"
#include "platform/tesseract/TesseractRecognizer.h"
#include "platform/x11/X11Permissions.h"
#include "platform/x11/X11Session.h"
#include "platform/x11/clipboard/X11Pasteboard.h"
#include "platform/x11/keys/X11Hotkeys.h"
#include "platform/x11/keys/X11KeyPoster.h"
#include "platform/x11/keys/X11KeyTap.h"
#include "platform/x11/keys/X11Keyboard.h"
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
    std::unique_ptr<x11::X11Session> session;
    posix::SystemClock clock;
    posix::StdoutConsole console;
    posix::PosixFileSystem fileSystem;
    posix::InotifyFileEvents fileEvents{dispatch};
    posix::InotifyFolderEvents folderEvents{dispatch};
    posix::PosixProcesses processes;
    posix::LinuxResources resources;
    const ToolPaths tools;
    qt::QtImageCodec imageCodec;
    tesseract::TesseractRecognizer textRecognizer{dispatch};
    posix::JsonUserDefaultsStore defaults;
    posix::LinuxDesktopSettings screenshotSettings;
    const DesktopSettings desktopSettings;
    x11::X11Pasteboard pasteboard;
    x11::X11Keyboard keyboard;
    x11::X11KeyTap keyTap;
    x11::X11KeyPoster keyPoster;
    x11::X11Hotkeys hotkeys;
    x11::X11Permissions permissions;
    qt::QtStatusBar statusBar;
    qt::QtAlerts alerts;
    qt::AppcastUpdater updater;
    qt::QtApplication application;
    qt::QtScreens screens;
    qt::QtTextMeasurer textMeasurer;
    views::QtToastViews toastViews;
};

} // namespace tallowbay
