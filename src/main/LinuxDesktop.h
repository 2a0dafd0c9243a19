#pragma once

#include "main/Absent.h"
#include "platform/DesktopSettings.h"
#include "platform/Platform.h"
#include "platform/Processes.h"
#include "platform/linux/JsonUserDefaults.h"
#include "platform/linux/LinuxResources.h"
#include "platform/linux/PosixFileSystem.h"
#include "platform/linux/PosixProcesses.h"
#include "platform/linux/StdoutConsole.h"
#include "platform/linux/SystemClock.h"
#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtDispatch.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/QtStatusBar.h"
#include "platform/qt/QtTextMeasurer.h"
#include "views/QtToastViews.h"

namespace tallowbay {

// Every backend of the program on an X11 desktop, in an order in which each may use those before
// it. Needs the QApplication; its users end before it does.
class LinuxDesktop {
public:
    LinuxDesktop();

    Platform platform();

    // The main loop. Returns the exit status.
    int run() { return application.run(); }

private:
    qt::QtDispatch dispatch;
    linux_desktop::SystemClock clock;
    linux_desktop::StdoutConsole console;
    linux_desktop::PosixFileSystem fileSystem;
    absent::NoFileEvents fileEvents;
    absent::NoFolderEvents folderEvents;
    linux_desktop::PosixProcesses processes;
    linux_desktop::LinuxResources resources;
    const ToolPaths tools;
    absent::NoImageCodec imageCodec;
    absent::NoTextRecognizer textRecognizer;
    linux_desktop::JsonUserDefaultsStore defaults;
    DesktopSettings desktopSettings;
    absent::NoPasteboard pasteboard;
    absent::NoKeyTap keyTap;
    absent::NoKeyPoster keyPoster;
    absent::NoHotkeys hotkeys;
    absent::NoPermissions permissions;
    qt::QtStatusBar statusBar;
    qt::QtAlerts alerts;
    absent::NoUpdater updater;
    qt::QtApplication application;
    qt::QtScreens screens;
    qt::QtTextMeasurer textMeasurer;
    views::QtToastViews toastViews;
};

} // namespace tallowbay
