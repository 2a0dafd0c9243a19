#include "platform/posix/preferences/LinuxDesktopSettings.h"

#include "platform/posix/Environment.h"
#include "platform/posix/LinuxResources.h"
#include "platform/posix/preferences/ScreenshotToolNames.h"
#include "platform/posix/preferences/SettingsText.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

// How GNOME calls the folder of its screenshots.
struct Translation {
    const char* language;
    const char* folder;
};

constexpr std::array translations{
    Translation{"en", "Screenshots"},
    Translation{"ab", "Аекран ақәҭыхра"},
    Translation{"be", "Здымкі экрана"},
    Translation{"bg", "Снимки на екрана"},
    Translation{"ca", "Captures de pantalla"},
    Translation{"cs", "Snímky obrazovky"},
    Translation{"da", "Skærmbilleder"},
    Translation{"de", "Bildschirmfotos"},
    Translation{"el", "Στιγμιότυπα οθόνης"},
    Translation{"es", "Capturas de pantalla"},
    Translation{"eu", "Pantaila-argazkiak"},
    Translation{"fa", "نماگرفت\u200cها"},
    Translation{"fi", "Kuvakaappaukset"},
    Translation{"fr", "Captures d’écran"},
    Translation{"fur", "Videadis"},
    Translation{"gl", "Capturas de pantalla"},
    Translation{"he", "צילומי מסך"},
    Translation{"hr", "Slike zaslona"},
    Translation{"hu", "Képernyőképek"},
    Translation{"ia", "Capturas de schermo"},
    Translation{"id", "Cuplikan Layar"},
    Translation{"ie", "Capturas de ecran"},
    Translation{"is", "Skjámyndir"},
    Translation{"it", "Schermate"},
    Translation{"ja", "スクリーンショット"},
    Translation{"ka", "ეკრანის ანაბეჭდები"},
    Translation{"kk", "Скриншоттар"},
    Translation{"ko", "스크린샷"},
    Translation{"lt", "Ekrano nuotraukos"},
    Translation{"lv", "Ekrānattēli"},
    Translation{"nb", "Skjermbilder"},
    Translation{"ne", "स्क्रिनसट"},
    Translation{"nl", "Schermafdrukken"},
    Translation{"oc", "Capturas d'ecran"},
    Translation{"pa", "ਸਕਰੀਨਸ਼ਾਟ"},
    Translation{"pl", "Zrzuty ekranu"},
    Translation{"pt", "Capturas de tela"},
    Translation{"pt", "Capturas de ecrã"},
    Translation{"ru", "Снимки экрана"},
    Translation{"sk", "Snímky obrazovky"},
    Translation{"sl", "Zaslonske slike"},
    Translation{"sr", "Снимци екрана"},
    Translation{"sv", "Skärmbilder"},
    Translation{"th", "จับภาพหน้าจอ"},
    Translation{"tr", "Ekran Görüntüleri"},
    Translation{"ug", "ئېكران كۆرۈنۈشى"},
    Translation{"uk", "Знімки екрана"},
    Translation{"vi", "Chụp màn hình"},
    Translation{"zh", "截图"},
    Translation{"zh", "屏幕截图"},
    Translation{"zh", "螢幕快照"},
};

// Those of the session's language first.
std::vector<fs::path> screenshotFolders(const fs::path& pictures, const std::string& language)
{
    std::vector<fs::path> folders;
    for (const bool own : {true, false})
        for (const auto& translation : translations)
            if ((translation.language == language) == own)
                folders.push_back(pictures / translation.folder);
    return folders;
}

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

// The first that says something, as for any program's messages.
std::string languageOfEnvironment()
{
    for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
        if (const auto text = environmentText(variable))
            return text->substr(0, text->find_first_of("_.:@"));
    return {};
}

// The tools of single window managers ask for these.
std::vector<std::pair<fs::path, std::string>> foldersOfVariables()
{
    std::vector<std::pair<fs::path, std::string>> folders;
    for (const char* name :
         {"XDG_SCREENSHOTS_DIR", "HYPRSHOT_DIR", "GRIM_DEFAULT_DIR", "XDG_PICTURES_DIR"})
        if (const auto folder = environmentFolder(name))
            folders.emplace_back(*folder, name);
    return folders;
}

std::vector<std::string> gsettingsCommand(
    const SessionSurroundings& surroundings, const char* schema, const char* key)
{
    if (surroundings.gsettings.empty())
        return {};
    return {surroundings.gsettings, "get", schema, key};
}

std::optional<fs::path> folderFromSetting(
    const std::optional<std::string>& printed, const fs::path& home)
{
    const auto text = printed ? unquotedSetting(*printed) : std::nullopt;
    return text ? folderFromText(*text, home) : std::nullopt;
}

} // namespace

SessionSurroundings SessionSurroundings::ofEnvironment()
{
    return {
        .desktops = split(environmentText("XDG_CURRENT_DESKTOP").value_or(""), ':'),
        .language = languageOfEnvironment(),
        .home = environmentHome(),
        .config = environmentConfigFolder(),
        .gsettings = executableOnSearchPath("gsettings"),
        .variables = foldersOfVariables(),
    };
}

LinuxDesktopSettings::LinuxDesktopSettings(
    Dispatch& dispatch, SessionSurroundings session, FolderLooks::Look look,
    std::chrono::milliseconds patience)
    : surroundings(std::move(session))
    , looks(std::move(look), patience)
    , userDirs(surroundings.config / "user-dirs.dirs")
    , spectacle(surroundings.config / "spectaclerc")
    , xfce(surroundings.config / "xfce4" / "xfce4-screenshooter")
    , tools(surroundings.config, surroundings.home)
    , autoSaveDirectory(
          dispatch,
          gsettingsCommand(surroundings, "org.gnome.gnome-screenshot", "auto-save-directory"),
          surroundings.config / "dconf" / "user")
    , mateDirectory(
          dispatch, gsettingsCommand(surroundings, "org.mate.screenshot", "last-save-directory"),
          surroundings.config / "dconf" / "user")
{
}

DesktopSettings LinuxDesktopSettings::settings()
{
    return {
        .screenshotFolder =
            [this] {
                looks.refresh();
                return screenshotFolder();
            },
        .screenshotPlaces =
            [this] {
                looks.refresh();
                return screenshotPlaces();
            },
        .screenshotNamePatterns = screenshotToolNames(),
        .screenshotNameDates = screenshotToolDates(),
    };
}

bool LinuxDesktopSettings::runs(std::string_view desktop) const
{
    return std::ranges::find(surroundings.desktops, desktop) != surroundings.desktops.end();
}

LinuxDesktopSettings::Folder LinuxDesktopSettings::presentFolder(
    const std::vector<fs::path>& candidates)
{
    for (const auto& folder : candidates)
        if (looks.isThere(folder))
            return folder;
    return std::nullopt;
}

LinuxDesktopSettings::Folder LinuxDesktopSettings::screenshotFolder()
{
    if (runs("KDE"))
        return spectacleFolder();
    if (runs("XFCE"))
        return xfceFolder();
    // Budgie calls itself GNOME, too, but takes its screenshots with the separate program.
    if (runs("GNOME") && !runs("Budgie"))
        return gnomeShellFolder();
    for (const char* desktop : {"X-Cinnamon", "Budgie", "Unity"})
        if (runs(desktop))
            return gnomeScreenshotFolder();
    return std::nullopt;
}

// The Shell makes its folder with the first screenshot.
LinuxDesktopSettings::Folder LinuxDesktopSettings::gnomeShellFolder()
{
    const auto folders = screenshotFolders(pictures(), surroundings.language);
    if (const auto present = presentFolder(folders))
        return present;
    if (const auto chosen = chosenAutoSaveFolder())
        return chosen;
    return folders.front();
}

LinuxDesktopSettings::Folder LinuxDesktopSettings::gnomeScreenshotFolder()
{
    if (const auto chosen = chosenAutoSaveFolder())
        return chosen;
    return presentFolder({pictures()});
}

LinuxDesktopSettings::Folder LinuxDesktopSettings::chosenAutoSaveFolder()
{
    return folderFromSetting(autoSaveDirectory.lastKnown(), surroundings.home);
}

LinuxDesktopSettings::Folder LinuxDesktopSettings::spectacleFolder()
{
    if (const auto chosen = chosenSpectacleFolder())
        return chosen;
    return presentFolder({pictures() / "Screenshots", pictures()});
}

LinuxDesktopSettings::Folder LinuxDesktopSettings::chosenSpectacleFolder()
{
    // Group and key have changed from version to version.
    for (const char* group : {"ImageSave", "Save", "General"})
        for (const char* key :
             {"imageSaveLocation", "defaultSaveLocation", "default-save-location"})
            if (const auto text = keyFileValue(spectacle.current(), group, key))
                if (const auto folder = folderFromText(*text, surroundings.home))
                    return folder;
    return std::nullopt;
}

LinuxDesktopSettings::Folder LinuxDesktopSettings::xfceFolder()
{
    const auto text = keyFileValue(xfce.current(), "", "screenshot_dir");
    return text ? folderFromText(*text, surroundings.home) : std::nullopt;
}

std::vector<ScreenshotPlace> LinuxDesktopSettings::screenshotPlaces()
{
    PlaceList list(looks);
    list.keepForOthers(surroundings.home);
    list.keepForOthers(pictures());
    list.keepForOthers(userFolderOr("XDG_DESKTOP_DIR", "Desktop"));
    list.keepForOthers(userFolderOr("XDG_DOWNLOAD_DIR", "Downloads"));
    list.keepForOthers(userFolderOr("XDG_DOCUMENTS_DIR", "Documents"));
    addChosen(list);
    addUsual(list);
    return list.places();
}

void LinuxDesktopSettings::addChosen(PlaceList& list)
{
    const auto add = [&](const Folder& folder, const std::string& tool) {
        if (folder)
            list.add(*folder, "set in " + tool);
    };
    add(chosenSpectacleFolder(), "Spectacle");
    add(xfceFolder(), "Xfce's screenshooter");
    add(chosenAutoSaveFolder(), "gnome-screenshot");
    add(folderFromSetting(mateDirectory.lastKnown(), surroundings.home), "MATE's screenshot tool");
    for (const auto& [folder, tool] : tools.chosen())
        add(folder, tool);
    for (const auto& [folder, variable] : surroundings.variables) {
        list.add(folder, "named by $" + variable);
        if (variable == "XDG_PICTURES_DIR")
            list.keepForOthers(folder);
    }
}

// All of them on every desktop: what is installed later, or started by a key, tells nobody.
void LinuxDesktopSettings::addUsual(PlaceList& list)
{
    const auto screenshots = screenshotFolders(pictures(), surroundings.language);
    list.add(screenshots.front(), "GNOME's folder for screenshots");
    list.add(pictures() / "Screenshots", "the usual folder for screenshots");
    if (const auto folder = screenshotFolder())
        list.add(*folder, "this desktop's own tool saves here");
    list.add(pictures(), "where Spectacle, Flameshot and the tools of GNOME and Xfce save");
    list.add(userFolderOr("XDG_DESKTOP_DIR", "Desktop"), "where MATE and some scripts save");
    list.add(surroundings.home, "where scrot, ksnip and grim save");
}

fs::path LinuxDesktopSettings::userFolderOr(const char* key, const char* usualName)
{
    return userFolder(userDirs.current(), key, surroundings.home)
        .value_or(surroundings.home / usualName);
}

} // namespace tallowbay::posix
