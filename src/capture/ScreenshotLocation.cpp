#include "capture/ScreenshotLocation.h"

#include "base/AsciiText.h"
#include "base/PreferenceKeys.h"
#include "capture/ImageCompressor.h"
#include "platform/DesktopSettings.h"
#include "platform/FileSystem.h"
#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"

#include <algorithm>

namespace tallowbay {

namespace fs = std::filesystem;

namespace {

// "~" alone and "~/..." are the user's home, from which a relative path is meant, too.
fs::path expandTilde(const std::string& location, const fs::path& home)
{
    if (location == "~")
        return home;
    return home / (location.starts_with("~/") ? location.substr(2) : location);
}

// "/home/u/Shots/" and "/home/u/Shots" are one folder.
fs::path withoutTrailingSlash(const fs::path& folder)
{
    return folder.has_filename() || !folder.has_relative_path() ? folder : folder.parent_path();
}

} // namespace

ScreenshotLocation::ScreenshotLocation(
    UserDefaultsStore& store, const FileSystem& fileSystem, const DesktopSettings& desktop)
    : preferences(store.open(preference::screenshotDomain))
    , fileSystem(fileSystem)
    , desktop(desktop)
{
}

ScreenshotLocation::~ScreenshotLocation() = default;

fs::path ScreenshotLocation::systemScreenshotDirectory() const
{
    const auto location = stringValue(*preferences, preference::screenshotLocation);
    if (location && !location->empty())
        return withoutTrailingSlash(expandTilde(*location, fileSystem.homeFolder()));
    if (const auto folder = desktop.screenshotFolder())
        return withoutTrailingSlash(*folder);
    return fileSystem.homeFolder() / "Desktop";
}

bool ScreenshotLocation::targetIsClipboard() const
{
    return asciiLowercase(stringValue(*preferences, preference::screenshotTarget).value_or(""))
        == "clipboard";
}

bool hasScreenshotName(const fs::path& path, const std::vector<std::string>& furtherPrefixes)
{
    const std::string stem = path.stem().string();
    const auto begins = [&](const std::string& prefix) { return stem.starts_with(prefix); };
    return begins("Screenshot ") || begins("Screen Shot ")
        || std::ranges::any_of(furtherPrefixes, begins);
}

bool hasScreenshotExtension(const fs::path& path)
{
    const std::string extension = lowercaseExtension(path);
    return extension == "png" || extension == "jpg" || extension == "jpeg";
}

} // namespace tallowbay
