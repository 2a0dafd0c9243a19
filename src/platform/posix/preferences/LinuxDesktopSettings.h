#pragma once

#include "platform/DesktopSettings.h"
#include "platform/posix/files/CachedText.h"
#include "platform/posix/preferences/BackgroundSetting.h"

namespace tallowbay::posix {

// What the session says of itself.
struct SessionSurroundings {
    std::vector<std::string> desktops; // "GNOME", "KDE", ..., the most special first
    std::string language; // two or three letters; empty if it is not said
    std::filesystem::path home;
    std::filesystem::path config;
    std::filesystem::path gsettings; // the program; empty if there is none

    static SessionSurroundings ofEnvironment();
};

// The folder that the running desktop's own screenshot tool saves to, as far as its settings tell:
// GNOME Shell, gnome-screenshot, Spectacle and Xfce's screenshooter.
//
// Thread: main queue. The settings that it hands out last as long as this object, the dispatch
// outlives both.
class LinuxDesktopSettings {
public:
    LinuxDesktopSettings(Dispatch&, SessionSurroundings);

    DesktopSettings settings();

private:
    using Folder = std::optional<std::filesystem::path>;
    bool runs(std::string_view desktop) const;
    Folder screenshotFolder();
    Folder gnomeShellFolder();
    Folder gnomeScreenshotFolder();
    Folder chosenAutoSaveFolder();
    Folder spectacleFolder();
    Folder xfceFolder();
    std::filesystem::path pictures();

    const SessionSurroundings surroundings;
    CachedText userDirs;
    CachedText spectacle;
    CachedText xfce;
    BackgroundSetting autoSaveDirectory;
};

} // namespace tallowbay::posix
