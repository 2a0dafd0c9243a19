#pragma once

#include "app/ScreenshotWatcher.h"
#include "hotkeys/HotkeyConfig.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay {

// How the program fares: what a person in trouble wants to know first.
struct ProgramStatus {
    struct Hotkey {
        std::string purpose;
        HotkeyConfig wanted;
        std::optional<HotkeyConfig> working; // empty: another program owns it
    };

    bool setupDone = true; // else nothing is watched yet
    std::vector<ScreenshotWatcher::WatchedPlace> places;
    std::vector<std::filesystem::path> absentPlaces; // of these, those that do not exist
    std::optional<ScreenshotWatcher::Noticed> lastNoticed;
    std::vector<Hotkey> hotkeys;
    std::vector<std::string> troubles; // what does not work, a sentence each
    WallTime now;
    std::filesystem::path home;
};

// In lines for people; ends with a line feed.
std::string statusReport(const ProgramStatus&);

} // namespace tallowbay
