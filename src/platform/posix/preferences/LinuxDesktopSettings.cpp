#include "platform/posix/preferences/LinuxDesktopSettings.h"

#include "platform/posix/Environment.h"
#include "platform/posix/LinuxResources.h"
#include "platform/posix/preferences/SettingsText.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

// How GNOME calls the folder of its screenshots, and what names of screenshots begin with.
struct Translation {
    const char* language;
    const char* folder;
    const char* word;
};

constexpr std::array translations{
    Translation{"en", "Screenshots", "Screenshot"},
    Translation{"ca", "Captures de pantalla", "Captura de pantalla"},
    Translation{"cs", "Snímky obrazovky", "Snímek obrazovky"},
    Translation{"da", "Skærmbilleder", "Skærmbillede"},
    Translation{"de", "Bildschirmfotos", "Bildschirmfoto"},
    Translation{"es", "Capturas de pantalla", "Captura de pantalla"},
    Translation{"fi", "Kuvakaappaukset", "Kuvakaappaus"},
    Translation{"fr", "Captures d’écran", "Capture d’écran"},
    Translation{"hu", "Képernyőképek", "Képernyőkép"},
    Translation{"it", "Schermate", "Schermata"},
    Translation{"ja", "スクリーンショット", "スクリーンショット"},
    Translation{"ko", "스크린샷", "스크린샷"},
    Translation{"nb", "Skjermbilder", "Skjermbilde"},
    Translation{"nl", "Schermafdrukken", "Schermafdruk"},
    Translation{"pl", "Zrzuty ekranu", "Zrzut ekranu"},
    Translation{"pt", "Capturas de tela", "Captura de tela"},
    Translation{"pt", "Capturas de ecrã", "Captura de ecrã"},
    Translation{"ru", "Снимки экрана", "Снимок экрана"},
    Translation{"sv", "Skärmbilder", "Skärmbild"},
    Translation{"tr", "Ekran Görüntüleri", "Ekran Görüntüsü"},
    Translation{"uk", "Знімки екрана", "Знімок екрана"},
    Translation{"zh", "截图", "截图"},
    Translation{"zh", "屏幕截图", "屏幕截图"},
};

std::vector<std::string> namePrefixes()
{
    std::vector<std::string> prefixes;
    for (const auto& translation : translations)
        for (const char* separator : {" ", "_"})
            prefixes.push_back(std::string(translation.word) + separator);
    std::ranges::sort(prefixes);
    prefixes.erase(std::unique(prefixes.begin(), prefixes.end()), prefixes.end());
    return prefixes;
}

// "2026-01-05 10-31-12" (GNOME, MATE), "2026-01-05_10-31-12" (Xfce) and "2026-01-05_10-31"
// (Flameshot); "20260105_103112" (Spectacle) and "20260105-103112" (ksnip).
std::vector<std::string> nameDates()
{
    return {
        R"((\d{4})-(\d{2})-(\d{2})[ _](\d{2})[-.:](\d{2})(?!\d))",
        R"((\d{4})(\d{2})(\d{2})[_-](\d{2})(\d{2})\d{2}(?!\d))"};
}

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

std::optional<fs::path> presentFolder(const std::vector<fs::path>& candidates)
{
    std::error_code ignored;
    for (const auto& folder : candidates)
        if (fs::is_directory(folder, ignored))
            return folder;
    return std::nullopt;
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

std::vector<std::string> gsettingsCommand(const SessionSurroundings& surroundings)
{
    if (surroundings.gsettings.empty())
        return {};
    return {surroundings.gsettings, "get", "org.gnome.gnome-screenshot", "auto-save-directory"};
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
    };
}

LinuxDesktopSettings::LinuxDesktopSettings(Dispatch& dispatch, SessionSurroundings session)
    : surroundings(std::move(session))
    , userDirs(surroundings.config / "user-dirs.dirs")
    , spectacle(surroundings.config / "spectaclerc")
    , xfce(surroundings.config / "xfce4" / "xfce4-screenshooter")
    , autoSaveDirectory(
          dispatch, gsettingsCommand(surroundings), surroundings.config / "dconf" / "user")
{
}

DesktopSettings LinuxDesktopSettings::settings()
{
    return {[this] { return screenshotFolder(); }, namePrefixes(), nameDates()};
}

bool LinuxDesktopSettings::runs(std::string_view desktop) const
{
    return std::ranges::find(surroundings.desktops, desktop) != surroundings.desktops.end();
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
    const auto& printed = autoSaveDirectory.lastKnown();
    const auto text = printed ? unquotedSetting(*printed) : std::nullopt;
    return text ? folderFromText(*text, surroundings.home) : std::nullopt;
}

LinuxDesktopSettings::Folder LinuxDesktopSettings::spectacleFolder()
{
    // Group and key have changed from version to version.
    for (const char* group : {"ImageSave", "Save", "General"})
        for (const char* key :
             {"imageSaveLocation", "defaultSaveLocation", "default-save-location"})
            if (const auto text = keyFileValue(spectacle.current(), group, key))
                if (const auto folder = folderFromText(*text, surroundings.home))
                    return folder;
    return presentFolder({pictures() / "Screenshots", pictures()});
}

LinuxDesktopSettings::Folder LinuxDesktopSettings::xfceFolder()
{
    const auto text = keyFileValue(xfce.current(), "", "screenshot_dir");
    return text ? folderFromText(*text, surroundings.home) : std::nullopt;
}

fs::path LinuxDesktopSettings::pictures()
{
    return picturesFolder(userDirs.current(), surroundings.home)
        .value_or(surroundings.home / "Pictures");
}

} // namespace tallowbay::posix
