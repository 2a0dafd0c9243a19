#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay {

// What the desktop itself says of its screenshots, beside the screenshot preferences.
//
// Thread: main queue.
struct DesktopSettings {
    // The folder that the desktop's own screenshot tool saves to, where it can be told; asked twice
    // a second, so an answer must be cheap.
    std::function<std::optional<std::filesystem::path>()> screenshotFolder = [] {
        return std::nullopt;
    };

    // Prefixes, beside the system's own, by which the desktop's tools name their screenshots.
    std::vector<std::string> screenshotNamePrefixes;

    // How these names hold the time, beside the system's own spelling: regular expressions
    // (ECMAScript) with five groups, which are year, month, day, hour and minute.
    std::vector<std::string> screenshotNameDates;
};

} // namespace tallowbay
