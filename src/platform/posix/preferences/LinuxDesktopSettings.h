#pragma once

#include "platform/DesktopSettings.h"
#include "platform/posix/files/CachedText.h"
#include "platform/posix/preferences/BackgroundSetting.h"
#include "platform/posix/preferences/FolderLooks.h"
#include "platform/posix/preferences/ScreenshotToolFolders.h"

namespace tallowbay::posix {

// What the session says of itself.
struct SessionSurroundings {
    std::vector<std::string> desktops; // "GNOME", "KDE", ..., the most special first
    std::string language; // two or three letters; empty if it is not said
    std::filesystem::path home;
    std::filesystem::path config;
    std::filesystem::path gsettings; // the program; empty if there is none

    // Folders that the user has set for screenshots in variables, with their names.
    std::vector<std::pair<std::filesystem::path, std::string>> variables{};

    static SessionSurroundings ofEnvironment();
};

// The folder that the running desktop's own screenshot tool saves to, as far as its settings tell
// (GNOME Shell, gnome-screenshot, Spectacle and Xfce's screenshooter), and all those that the tools
// of any desktop save to.
//
// Thread: main queue. The settings that it hands out last as long as this object, the dispatch
// outlives both.
class LinuxDesktopSettings {
public:
    LinuxDesktopSettings(
        Dispatch&, SessionSurroundings, FolderLooks::Look = FolderLooks::atPath,
        std::chrono::milliseconds patience = FolderLooks::usualPatience);

    DesktopSettings settings();

private:
    using Folder = std::optional<std::filesystem::path>;
    bool runs(std::string_view desktop) const;
    Folder presentFolder(const std::vector<std::filesystem::path>& candidates);
    Folder screenshotFolder();
    Folder gnomeShellFolder();
    Folder gnomeScreenshotFolder();
    Folder chosenAutoSaveFolder();
    Folder spectacleFolder();
    Folder chosenSpectacleFolder();
    Folder xfceFolder();
    std::vector<ScreenshotPlace> screenshotPlaces();
    void addChosen(PlaceList&);
    void addUsual(PlaceList&);
    std::filesystem::path pictures() { return userFolderOr("XDG_PICTURES_DIR", "Pictures"); }
    std::filesystem::path userFolderOr(const char* key, const char* usualName);

    const SessionSurroundings surroundings;
    FolderLooks looks;
    CachedText userDirs;
    CachedText spectacle;
    CachedText xfce;
    ScreenshotToolFolders tools;
    BackgroundSetting autoSaveDirectory;
    BackgroundSetting mateDirectory;
};

} // namespace tallowbay::posix
