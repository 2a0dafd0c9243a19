#include "capture/ScreenshotLocation.h"

#include "base/AsciiText.h"
#include "base/PreferenceKeys.h"
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

std::vector<ScreenshotPlace> ScreenshotLocation::places() const
{
    if (const auto folder = preferredFolder())
        return {{tidied(*folder), true, "chosen in the screenshot preferences"}};
    auto places = desktop.screenshotPlaces();
    if (places.empty())
        places.push_back({systemScreenshotDirectory(), true, "the desktop's own"});
    return places;
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

} // namespace tallowbay
