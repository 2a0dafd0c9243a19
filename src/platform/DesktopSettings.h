#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay {

// A folder that screenshots come to, and why it is thought so.
struct ScreenshotPlace {
    std::filesystem::path folder;

    // Not where the folder is a place for other things, too: those would be many.
    bool withSubfolders = false;

    std::string reason; // in a few words for people

    bool operator==(const ScreenshotPlace&) const = default;
};

// What the desktop itself says of its screenshots, beside the screenshot preferences.
//
// Thread: main queue.
struct DesktopSettings {
    // The folder that the desktop's own screenshot tool saves to, where it can be told; asked twice
    // a second, so an answer must be cheap.
    std::function<std::optional<std::filesystem::path>()> screenshotFolder = [] {
        return std::nullopt;
    };

    // All folders that screenshot tools of this machine save to unless the user has chosen one for
    // all, whether they exist or not, each once. Asked twice a second as well.
    std::function<std::vector<ScreenshotPlace>()> screenshotPlaces = [] {
        return std::vector<ScreenshotPlace>{};
    };

    // How the desktop's tools name their screenshots, beside the system's own names: regular
    // expressions (ECMAScript) for a whole name without its extension.
    std::vector<std::string> screenshotNamePatterns;

    // How these names hold the time, beside the system's own spelling: regular expressions with
    // five groups, which are year, month, day, hour and minute.
    std::vector<std::string> screenshotNameDates;
};

} // namespace tallowbay
