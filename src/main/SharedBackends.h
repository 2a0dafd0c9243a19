#pragma once

#include "platform/DesktopSettings.h"
#include "platform/ToolPaths.h"
#include "platform/posix/LinuxResources.h"
#include "platform/posix/PosixCalendar.h"
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
#include "platform/qt/graphics/GraphicsFonts.h"
#include "platform/qt/graphics/QtGraphicsContext.h"
#include "platform/qt/graphics/QtImageCodec.h"
#include "platform/qt/portal/PortalFileTransfer.h"
#include "platform/qt/update/AppcastUpdater.h"
#include "platform/tesseract/TesseractRecognizer.h"

namespace tallowbay {

// What every Linux desktop has, whatever its display server, in an order in which each may use
// those before it. Needs the QApplication.
struct SharedBackends {
    SharedBackends();

    // See Desktop::finishBackgroundWork.
    void finishBackgroundWork();

    qt::QtDispatch dispatch;
    posix::SystemClock clock;
    posix::PosixCalendar calendar;
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
    qt::QtAlerts alerts;
    qt::AppcastUpdater updater;
    qt::PortalFileTransfer fileTransfer{dispatch};
    qt::QtApplication application;
    qt::QtScreens screens;
    qt::GraphicsFonts textMeasurer;
    qt::QtOffscreenGraphics offscreenGraphics{textMeasurer};
};

} // namespace tallowbay
