#include "platform/posix/preferences/ScreenshotToolFolders.h"

#include "base/Paths.h"
#include "platform/posix/preferences/SettingsText.h"

#include <algorithm>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

// Without slashes at the end, which make another path of the same folder.
fs::path tidied(const fs::path& folder)
{
    const fs::path normal = folder.lexically_normal();
    return normal.has_filename() ? normal : normal.parent_path();
}

} // namespace

ScreenshotToolFolders::ScreenshotToolFolders(const fs::path& config, fs::path home)
    : home(std::move(home))
    , files{
          {"Flameshot", "General", "savePath", CachedText(config / "flameshot/flameshot.ini")},
          {"ksnip", "Application", "SaveDirectory", CachedText(config / "ksnip/ksnip.conf")},
          {"swappy", "Default", "save_dir", CachedText(config / "swappy/config")},
      }
{
}

std::vector<std::pair<fs::path, std::string>> ScreenshotToolFolders::chosen()
{
    std::vector<std::pair<fs::path, std::string>> folders;
    for (File& file : files) {
        const auto text = keyFileValue(file.text.current(), file.group, file.key);
        if (const auto folder = text ? folderFromText(plainSetting(*text), home) : std::nullopt)
            folders.emplace_back(*folder, file.tool);
    }
    return folders;
}

void PlaceList::keepForOthers(const fs::path& folder)
{
    others.push_back(tidied(folder));
}

void PlaceList::add(const fs::path& folder, const std::string& reason)
{
    const fs::path tidy = tidied(folder);
    const bool isKnown = std::ranges::any_of(
        list, [&](const ScreenshotPlace& place) { return looks.areOne(place.folder, tidy); });
    if (!isKnown)
        list.push_back({tidy, false, reason});
}

std::vector<ScreenshotPlace> PlaceList::places() const
{
    auto places = list;
    for (ScreenshotPlace& place : places)
        place.withSubfolders = !isForOthers(place.folder);
    return places;
}

bool PlaceList::isForOthers(const fs::path& folder) const
{
    return std::ranges::any_of(others, [&](const fs::path& other) {
        return isWithin(other, folder) || looks.areOne(other, folder);
    });
}

} // namespace tallowbay::posix
