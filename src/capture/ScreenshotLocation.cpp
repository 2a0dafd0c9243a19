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

constexpr int questionsBetweenLookups = 60; // half a minute of the location poll

// The folder inside another one that a text names, whatever slashes it begins with.
fs::path below(const fs::path& folder, const fs::path& text)
{
    return folder / text.relative_path();
}

// "/home/u//Shots/./" and "/home/u/Shots" are one folder. A ".." stays: it leads elsewhere where a
// link comes before it.
fs::path tidied(const fs::path& folder)
{
    fs::path tidy = folder.root_path();
    for (const fs::path& name : folder.relative_path()) {
        if (!name.empty() && name != ".")
            tidy /= name;
    }
    return tidy;
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
    if (const auto folder = preferredFolder())
        return tidied(*folder);
    if (const auto folder = desktop.screenshotFolder())
        return tidied(*folder);
    return fileSystem.homeFolder() / "Desktop";
}

// From the home folder, where the text does not begin with a slash.
std::optional<fs::path> ScreenshotLocation::preferredFolder() const
{
    const std::string text = stringValue(*preferences, preference::screenshotLocation).value_or("");
    if (text.empty())
        return std::nullopt;
    if (text.front() != '~')
        return fileSystem.homeFolder() / text;
    const auto end = std::min(text.find('/'), text.size());
    const auto home = homeOf(text.substr(1, end - 1));
    return home ? std::optional(below(*home, text.substr(end))) : std::nullopt;
}

// This question is asked twice a second, and the answer may come over a network, which may not be
// there yet: who was not found is looked up again after a while.
std::optional<fs::path> ScreenshotLocation::homeOf(const std::string& user) const
{
    if (user.empty())
        return fileSystem.homeFolder();
    const bool isKnown = lastUser && lastUser->name == user;
    if (!isKnown || (!lastUser->home && lastUser->questionsLeft-- == 0))
        lastUser = User{user, fileSystem.homeFolderOf(user), questionsBetweenLookups};
    return lastUser->home;
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
