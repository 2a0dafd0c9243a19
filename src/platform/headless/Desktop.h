#pragma once

#include "platform/DesktopSettings.h"
#include "platform/Platform.h"
#include "platform/ToolPaths.h"
#include "platform/headless/FixedCalendar.h"
#include "platform/headless/HandFedHotkeys.h"
#include "platform/headless/HandFedKeys.h"
#include "platform/headless/HeadlessAlerts.h"
#include "platform/headless/HeadlessApplication.h"
#include "platform/headless/HeadlessPermissions.h"
#include "platform/headless/HeadlessResources.h"
#include "platform/headless/HeadlessScreens.h"
#include "platform/headless/HeadlessStatusBar.h"
#include "platform/headless/HeadlessTextMeasurer.h"
#include "platform/headless/HeadlessUpdater.h"
#include "platform/headless/HeadlessWindows.h"
#include "platform/headless/MemoryFileSystem.h"
#include "platform/headless/MemoryPasteboard.h"
#include "platform/headless/MemoryUserDefaults.h"
#include "platform/headless/PlainImageCodec.h"
#include "platform/headless/RecordingConsole.h"
#include "platform/headless/RecordingGraphics.h"
#include "platform/headless/ScriptedProcesses.h"
#include "platform/headless/ScriptedTextRecognizer.h"
#include "platform/headless/VirtualTime.h"

namespace tallowbay::headless {

// Where the compressed copies of its user go.
inline const std::filesystem::path optimized = "/home/u/Downloads/Tallowbay/optimized";

// A whole desktop in memory: every seam, with the controls of each.
struct Desktop {
    VirtualClock clock;
    VirtualDispatch dispatch{clock};
    FixedCalendar calendar;
    RecordingConsole console;
    MemoryFileSystem files{clock};
    MemoryFileEvents fileEvents{files, dispatch};
    MemoryFolderEvents folderEvents{files, dispatch};
    ScriptedProcesses processes;
    HeadlessResources resources;
    ToolPaths tools;
    PlainImageCodec imageCodec;
    RecordingOffscreenGraphics offscreenGraphics;
    ScriptedTextRecognizer textRecognizer;
    MemoryUserDefaultsStore defaults;
    DesktopSettings settings;
    MemoryPasteboard pasteboard;
    HandFedKeyTap keyTap;
    JournalKeyPoster keyPoster;
    HandFedHotkeys hotkeys{dispatch};
    HeadlessPermissions permissions;
    HeadlessStatusBar statusBar;
    HeadlessAlerts alerts;
    HeadlessUpdater updater;
    HeadlessApplication application{dispatch};
    HeadlessScreens screens;
    HeadlessTextMeasurer textMeasurer;
    HeadlessWindowSystem windowSystem;

    Platform platform() { return platformWith(files, pasteboard); }

    // With others' files or pasteboard, as of the machine's own disk.
    Platform platformWith(FileSystem& disk, Pasteboard& board)
    {
        return {dispatch,       clock,        calendar,    console, disk,       fileEvents,
                folderEvents,   processes,    resources,   tools,   imageCodec, offscreenGraphics,
                textRecognizer, defaults,     settings,    board,   keyTap,     keyPoster,
                hotkeys,        permissions,  statusBar,   alerts,  updater,    application,
                screens,        textMeasurer, windowSystem};
    }
};

} // namespace tallowbay::headless
