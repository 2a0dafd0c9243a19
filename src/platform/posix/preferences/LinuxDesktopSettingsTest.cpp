#include "platform/posix/preferences/LinuxDesktopSettings.h"

#include "platform/posix/ChildProcess.h"
#include "platform/posix/preferences/ScreenshotToolNames.h"
#include "support/LoopDispatch.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <mutex>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;
using Folder = std::optional<fs::path>;

class LinuxDesktopSettingsTest : public testing::Test {
protected:
    void start(std::vector<std::string> desktops, const std::string& language = "en")
    {
        owner.emplace(
            dispatch,
            SessionSurroundings{std::move(desktops), language, home, home / ".config", gsettings},
            FolderLooks::atPath, 30s);
        settings = owner->settings();
    }
    Folder folder() { return settings.screenshotFolder(); }
    bool becomes(const Folder& expected)
    {
        return dispatch.runUntil([&] { return folder() == expected; }, 30s);
    }
    void write(const fs::path& relative, const std::string& text)
    {
        const auto path = home / relative;
        fs::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }
    // A program that answers as gsettings does, and leaves a mark of every run.
    void installGsettings(const std::string& answer)
    {
        gsettings = home / "gsettings";
        write("answer", answer);
        write(
            "gsettings",
            "#!/bin/sh\necho \"$@\" >> '" + (home / "runs").native() + "'\nexec cat '"
                + (home / "answer").native() + "'\n");
        fs::permissions(gsettings, fs::perms(0755));
    }
    std::string runs() { return readFile(home / "runs").value_or(""); }

    test::TemporaryFolder temporary;
    const fs::path home = temporary.path;
    fs::path gsettings;
    test::LoopDispatch dispatch;
    std::optional<LinuxDesktopSettings> owner;
    DesktopSettings settings;
};

TEST_F(LinuxDesktopSettingsTest, SaysNothingOfAnUnknownDesktop)
{
    installGsettings("'file:///srv/shots'\n");
    write(".config/spectaclerc", "[Save]\ndefaultSaveLocation=file:///srv/shots\n");
    fs::create_directories(home / "Pictures" / "Screenshots");
    for (const std::vector<std::string>& desktops :
         {std::vector<std::string>{}, std::vector<std::string>{"sway"}, {"LXQt"}}) {
        start(desktops);
        EXPECT_EQ(folder(), std::nullopt);
    }
}

TEST_F(LinuxDesktopSettingsTest, NamesTheFolderOfGnomesScreenshots)
{
    start({"ubuntu", "GNOME"});
    EXPECT_EQ(folder(), home / "Pictures" / "Screenshots") << "made with the first screenshot";
    fs::create_directories(home / "Pictures" / "Screenshots");
    EXPECT_EQ(folder(), home / "Pictures" / "Screenshots");
}

TEST_F(LinuxDesktopSettingsTest, NamesTheTranslatedFolderOfGnomesScreenshots)
{
    for (const std::string name : {"Bildschirmfotos", "Captures d’écran", "Capturas de pantalla"}) {
        fs::create_directories(home / "Pictures" / name);
        start({"GNOME"});
        EXPECT_EQ(folder(), home / "Pictures" / name);
        fs::remove(home / "Pictures" / name);
    }
}

TEST_F(LinuxDesktopSettingsTest, PrefersTheFolderOfTheSessionsLanguage)
{
    start({"GNOME"}, "de");
    EXPECT_EQ(folder(), home / "Pictures" / "Bildschirmfotos");
    fs::create_directories(home / "Pictures" / "Screenshots");
    EXPECT_EQ(folder(), home / "Pictures" / "Screenshots") << "the only one that is there";
    fs::create_directories(home / "Pictures" / "Bildschirmfotos");
    EXPECT_EQ(folder(), home / "Pictures" / "Bildschirmfotos");
}

// In most languages the first screenshots went unnoticed.
TEST_F(LinuxDesktopSettingsTest, KnowsTheFolderOfTheSessionsLanguageBeforeThereIsOne)
{
    const std::pair<const char*, const char*> folders[] = {
        {"ab", "Аекран ақәҭыхра"},
        {"be", "Здымкі экрана"},
        {"bg", "Снимки на екрана"},
        {"el", "Στιγμιότυπα οθόνης"},
        {"eu", "Pantaila-argazkiak"},
        {"fa", "نماگرفت\u200cها"},
        {"fur", "Videadis"},
        {"gl", "Capturas de pantalla"},
        {"he", "צילומי מסך"},
        {"hr", "Slike zaslona"},
        {"ia", "Capturas de schermo"},
        {"id", "Cuplikan Layar"},
        {"ie", "Capturas de ecran"},
        {"is", "Skjámyndir"},
        {"ka", "ეკრანის ანაბეჭდები"},
        {"kk", "Скриншоттар"},
        {"lt", "Ekrano nuotraukos"},
        {"lv", "Ekrānattēli"},
        {"ne", "स्क्रिनसट"},
        {"oc", "Capturas d'ecran"},
        {"pa", "ਸਕਰੀਨਸ਼ਾਟ"},
        {"sk", "Snímky obrazovky"},
        {"sl", "Zaslonske slike"},
        {"sr", "Снимци екрана"},
        {"th", "จับภาพหน้าจอ"},
        {"ug", "ئېكران كۆرۈنۈشى"},
        {"vi", "Chụp màn hình"},
    };
    for (const auto& [language, name] : folders) {
        start({"GNOME"}, language);
        EXPECT_EQ(folder(), home / "Pictures" / name) << language;
    }
}

TEST_F(LinuxDesktopSettingsTest, KnowsTheFoldersOfEveryCountryThatSharesALanguage)
{
    for (const char* name : {"截图", "屏幕截图", "螢幕快照"}) {
        fs::create_directories(home / "Pictures" / name);
        start({"GNOME"}, "zh");
        EXPECT_EQ(folder(), home / "Pictures" / name);
        fs::remove(home / "Pictures" / name);
    }
}

TEST_F(LinuxDesktopSettingsTest, NamesTheEnglishFolderForALanguageThatItDoesNotKnow)
{
    start({"GNOME"}, "xx");
    EXPECT_EQ(folder(), home / "Pictures" / "Screenshots");
}

TEST_F(LinuxDesktopSettingsTest, FindsThePicturesWhereTheUserHasThem)
{
    write(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    start({"GNOME"});
    EXPECT_EQ(folder(), home / "Bilder" / "Screenshots");
    write(".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"/srv/pictures\"\n");
    EXPECT_EQ(folder(), "/srv/pictures/Screenshots") << "changed while the program runs";
}

TEST_F(LinuxDesktopSettingsTest, AsksForTheFolderOfGnomeScreenshotInTheBackground)
{
    installGsettings("'file:///srv/my%20shots'\n");
    start({"X-Cinnamon"});
    EXPECT_EQ(folder(), std::nullopt) << "not known yet";
    EXPECT_TRUE(becomes("/srv/my shots"));
    EXPECT_EQ(runs(), "get org.gnome.gnome-screenshot auto-save-directory\n");
}

TEST_F(LinuxDesktopSettingsTest, NamesThePicturesWhereGnomeScreenshotHasNoFolderOfItsOwn)
{
    installGsettings("''\n");
    fs::create_directories(home / "Pictures");
    start({"X-Cinnamon"});
    EXPECT_EQ(folder(), home / "Pictures");
    EXPECT_TRUE(dispatch.runUntil([&] { return !runs().empty(); }, 30s));
    EXPECT_EQ(folder(), home / "Pictures");
}

TEST_F(LinuxDesktopSettingsTest, PrefersTheFolderOfTheShellToThatOfGnomeScreenshot)
{
    installGsettings("'/srv/shots'\n");
    start({"GNOME"});
    EXPECT_TRUE(becomes("/srv/shots")) << "the Shell has taken none yet";
    fs::create_directories(home / "Pictures" / "Screenshots");
    EXPECT_EQ(folder(), home / "Pictures" / "Screenshots");
}

TEST_F(LinuxDesktopSettingsTest, TakesBudgieForAUserOfGnomeScreenshot)
{
    installGsettings("'/srv/shots'\n");
    fs::create_directories(home / "Pictures" / "Screenshots");
    start({"Budgie", "GNOME"});
    EXPECT_TRUE(becomes("/srv/shots"));
}

TEST_F(LinuxDesktopSettingsTest, ReadsTheSettingsOfSpectacle)
{
    start({"KDE"});
    EXPECT_EQ(folder(), std::nullopt);
    const std::vector<std::pair<std::string, Folder>> rows{
        {"[General]\ndefault-save-location=/srv/one\n", "/srv/one"},
        {"[Save]\ndefaultSaveLocation=file:///srv/two\n", "/srv/two"},
        {"[Save]\ndefaultSaveLocation[$e]=file:$HOME/Bilder\n", home / "Bilder"},
        {"[ImageSave]\nimageSaveLocation=file:///srv/three/\n[Save]\ndefaultSaveLocation=/x\n",
         "/srv/three/"},
        {"[Save]\ndefaultSaveLocation=sftp://host/shots\n", std::nullopt},
        {"[Other]\ndefaultSaveLocation=/x\n", std::nullopt}};
    for (const auto& [text, expected] : rows) {
        write(".config/spectaclerc", text);
        EXPECT_EQ(folder(), expected) << text;
    }
}

TEST_F(LinuxDesktopSettingsTest, NamesThePicturesWhereSpectacleHasNoFolderOfItsOwn)
{
    start({"KDE"});
    fs::create_directories(home / "Pictures");
    EXPECT_EQ(folder(), home / "Pictures");
    fs::create_directories(home / "Pictures" / "Screenshots");
    EXPECT_EQ(folder(), home / "Pictures" / "Screenshots");
}

TEST_F(LinuxDesktopSettingsTest, ReadsTheSettingsOfXfcesScreenshooter)
{
    start({"XFCE"});
    EXPECT_EQ(folder(), std::nullopt);
    write(".config/xfce4/xfce4-screenshooter", "delay=0\nscreenshot_dir=/srv/one\ntitle=x\n");
    EXPECT_EQ(folder(), "/srv/one");
    write(".config/xfce4/xfce4-screenshooter", "screenshot_dir=file:///srv/two%20words\n");
    EXPECT_EQ(folder(), "/srv/two words");
}

class ScreenshotPlacesTest : public LinuxDesktopSettingsTest {
protected:
    // What is said of a folder; empty if it is no place of screenshots.
    std::optional<ScreenshotPlace> place(const fs::path& folder)
    {
        std::optional<ScreenshotPlace> found;
        for (const ScreenshotPlace& place : settings.screenshotPlaces()) {
            if (place.folder == folder) {
                EXPECT_FALSE(found) << folder << " is there twice";
                found = place;
            }
        }
        return found;
    }
    bool isAlone(const fs::path& folder)
    {
        const auto found = place(folder);
        return found && !found->withSubfolders;
    }
    bool isWithSubfolders(const fs::path& folder)
    {
        const auto found = place(folder);
        return found && found->withSubfolders;
    }
    std::string reason(const fs::path& folder)
    {
        const auto found = place(folder);
        return found ? found->reason : "no place";
    }
};

TEST_F(ScreenshotPlacesTest, AreThoseOfEveryToolOnEveryDesktop)
{
    for (const char* desktop : {"none", "GNOME", "KDE", "XFCE", "MATE", "sway"}) {
        start({desktop});
        EXPECT_TRUE(isAlone(home)) << desktop;
        EXPECT_TRUE(isAlone(home / "Desktop")) << desktop;
        EXPECT_TRUE(isAlone(home / "Pictures")) << desktop;
        EXPECT_TRUE(isWithSubfolders(home / "Pictures" / "Screenshots")) << desktop;
        EXPECT_EQ(settings.screenshotPlaces().size(), 4u) << desktop;
    }
}

TEST_F(ScreenshotPlacesTest, AreWhereTheUserHasHisFolders)
{
    write(
        ".config/user-dirs.dirs",
        "XDG_PICTURES_DIR=\"$HOME/Bilder\"\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n");
    start({"GNOME"}, "de");
    EXPECT_TRUE(isAlone(home / "Bilder"));
    EXPECT_TRUE(isAlone(home / "Schreibtisch"));
    EXPECT_TRUE(isWithSubfolders(home / "Bilder" / "Bildschirmfotos"));
    EXPECT_FALSE(place(home / "Pictures"));
    EXPECT_FALSE(place(home / "Desktop"));
}

TEST_F(ScreenshotPlacesTest, AreWhatTheSettingsOfTheToolsNameAsSoonAsTheyDo)
{
    start({"none"});
    write(".config/flameshot/flameshot.ini", "[General]\nsavePath=/srv/flame\n");
    EXPECT_EQ(reason("/srv/flame"), "set in Flameshot");
    write(".config/flameshot/flameshot.ini", "[General]\nsavePath=\"/srv/f\\xfc, r\"\n");
    EXPECT_TRUE(place("/srv/fü, r"));
    EXPECT_FALSE(place("/srv/flame"));
    write(".config/ksnip/ksnip.conf", "[Application]\nSaveDirectory=/srv/ksnip\n");
    EXPECT_EQ(reason("/srv/ksnip"), "set in ksnip");
    write(".config/swappy/config", "[Default]\nsave_dir=$HOME/swappy\n");
    EXPECT_EQ(reason(home / "swappy"), "set in swappy");
    write(".config/spectaclerc", "[Save]\ndefaultSaveLocation=/srv/kde\n");
    EXPECT_EQ(reason("/srv/kde"), "set in Spectacle");
    write(".config/xfce4/xfce4-screenshooter", "screenshot_dir=/srv/xfce\n");
    EXPECT_EQ(reason("/srv/xfce"), "set in Xfce's screenshooter");
    EXPECT_TRUE(isWithSubfolders("/srv/xfce"));
}

TEST_F(ScreenshotPlacesTest, AreWhatTheDesktopsSettingsName)
{
    installGsettings("'/srv/shots'\n");
    start({"none"});
    // Both are asked at once, and either may be first.
    EXPECT_TRUE(
        dispatch.runUntil([&] { return reason("/srv/shots") == "set in gnome-screenshot"; }, 30s));
    EXPECT_EQ(settings.screenshotPlaces().size(), 5u);
    const std::string ofGnome = "get org.gnome.gnome-screenshot auto-save-directory\n";
    const std::string ofMate = "get org.mate.screenshot last-save-directory\n";
    EXPECT_TRUE(dispatch.runUntil(
        [&] { return runs() == ofGnome + ofMate || runs() == ofMate + ofGnome; }, 30s));
}

TEST_F(ScreenshotPlacesTest, AreWhatTheVariablesOfTheSessionName)
{
    owner.emplace(
        dispatch,
        SessionSurroundings{{}, "en", home, home / ".config", {}, {{"/srv/hypr", "HYPRSHOT_DIR"}}});
    settings = owner->settings();
    EXPECT_EQ(reason("/srv/hypr"), "named by $HYPRSHOT_DIR");
}

TEST_F(ScreenshotPlacesTest, AreWatchedAloneWherePeopleKeepOtherThingsWhateverNamesThem)
{
    start({"none"});
    for (const fs::path& folder :
         {home, home / "Pictures", home / "Documents", home / "Downloads", home.parent_path(),
          fs::path("/")}) {
        write(
            ".config/flameshot/flameshot.ini",
            "[General]\nsavePath=" + (folder / "").native() + "\n");
        EXPECT_TRUE(isAlone(folder)) << folder;
    }
}

TEST_F(ScreenshotPlacesTest, AreEachOneFolderHoweverItsPathIsWritten)
{
    fs::create_directories(home / "Pictures");
    fs::create_symlink(home / "Pictures", home / "link");
    fs::create_symlink(home, home / "Desktop");
    start({"none"});
    write(".config/flameshot/flameshot.ini", "[General]\nsavePath=" + (home / "link").native());
    EXPECT_TRUE(isAlone(home / "link"));
    EXPECT_FALSE(place(home / "Pictures"));
    EXPECT_TRUE(isAlone(home / "Desktop"));
    EXPECT_FALSE(place(home));
}

// The pictures may lie on a network that does not answer.
TEST_F(ScreenshotPlacesTest, StayAsTheyWereWhileAFolderDoesNotAnswer)
{
    fs::create_directories(home / "Pictures" / "Bildschirmfotos");
    const auto network = std::make_shared<std::mutex>();
    owner.emplace(
        dispatch, SessionSurroundings{{"GNOME"}, "en", home, home / ".config", {}},
        [network](const fs::path& path) {
            const std::scoped_lock passing(*network);
            return FolderLooks::atPath(path);
        });
    settings = owner->settings();
    EXPECT_TRUE(
        dispatch.runUntil([&] { return folder() == home / "Pictures" / "Bildschirmfotos"; }, 30s));
    const auto places = settings.screenshotPlaces();
    const std::scoped_lock silence(*network);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(folder(), home / "Pictures" / "Bildschirmfotos");
        EXPECT_EQ(settings.screenshotPlaces(), places);
    }
}

TEST_F(LinuxDesktopSettingsTest, HandsOutTheNamesOfTheTools)
{
    start({});
    EXPECT_EQ(settings.screenshotNamePatterns, screenshotToolNames());
    EXPECT_EQ(settings.screenshotNameDates, screenshotToolDates());
}

TEST(SessionSurroundingsTest, ReadsTheEnvironment)
{
    std::map<std::string, std::optional<std::string>> before;
    for (const char* name : {"XDG_CURRENT_DESKTOP", "LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        before[name] = value ? std::optional<std::string>(value) : std::nullopt;
        ::unsetenv(name);
    }
    EXPECT_TRUE(SessionSurroundings::ofEnvironment().desktops.empty());
    EXPECT_EQ(SessionSurroundings::ofEnvironment().language, "");
    ::setenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", 1);
    ::setenv("LANG", "de_AT.UTF-8", 1);
    EXPECT_THAT(
        SessionSurroundings::ofEnvironment().desktops, testing::ElementsAre("ubuntu", "GNOME"));
    EXPECT_EQ(SessionSurroundings::ofEnvironment().language, "de");
    ::setenv("LANGUAGE", "fr:en", 1);
    EXPECT_EQ(SessionSurroundings::ofEnvironment().language, "fr");
    for (const auto& [name, value] : before)
        value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
}

class BackgroundSettingTest : public LinuxDesktopSettingsTest {
protected:
    BackgroundSettingTest() { write("database", "first"); }

    BackgroundSetting make(
        std::chrono::milliseconds shortest, std::chrono::milliseconds afterFailures = 0ms)
    {
        return BackgroundSetting(
            dispatch, {gsettings}, home / "database", {shortest, afterFailures});
    }
    bool hasRun(BackgroundSetting& setting, std::size_t times)
    {
        return dispatch.runUntil(
            [&] {
                setting.lastKnown();
                return runCount() >= times;
            },
            30s);
    }
    bool answers(BackgroundSetting& setting, const std::optional<std::string>& text)
    {
        return dispatch.runUntil([&] { return setting.lastKnown() == text; }, 30s);
    }
    std::size_t runCount() { return static_cast<std::size_t>(std::ranges::count(runs(), '\n')); }
};

TEST_F(BackgroundSettingTest, RunsTheProgramOnceHoweverOftenItIsAsked)
{
    installGsettings("one");
    auto setting = make(0ms);
    EXPECT_TRUE(answers(setting, "one"));
    for (int i = 0; i < 100; ++i)
        setting.lastKnown();
    dispatch.runUntil([] { return false; }, 50ms);
    EXPECT_EQ(runCount(), 1u);
}

TEST_F(BackgroundSettingTest, AsksAgainWhenTheDatabaseHasChanged)
{
    installGsettings("one");
    auto setting = make(0ms);
    EXPECT_TRUE(answers(setting, "one"));
    write("answer", "two");
    write("database", "changed");
    EXPECT_TRUE(answers(setting, "two"));
}

TEST_F(BackgroundSettingTest, AsksNoMoreOftenThanItsInterval)
{
    installGsettings("one");
    auto setting = make(10min);
    EXPECT_TRUE(answers(setting, "one"));
    write("database", "changed");
    setting.lastKnown();
    dispatch.runUntil([] { return false; }, 50ms);
    EXPECT_EQ(runCount(), 1u);
}

TEST_F(BackgroundSettingTest, StaysEmptyWhereTheProgramFailsOrIsAbsent)
{
    gsettings = "/nowhere/gsettings";
    auto absent = make(0ms);
    absent.lastKnown();
    BackgroundSetting none(dispatch, {}, home / "database");
    BackgroundSetting failing(dispatch, {"/bin/sh", "-c", "echo text; exit 1"}, home / "database");
    failing.lastKnown();
    dispatch.runUntil([] { return false; }, 100ms);
    EXPECT_EQ(absent.lastKnown(), std::nullopt);
    EXPECT_EQ(none.lastKnown(), std::nullopt);
    EXPECT_EQ(failing.lastKnown(), std::nullopt);
}

// The folder of the screenshots was lost with one run that came at a bad moment.
TEST_F(BackgroundSettingTest, KeepsItsAnswerWhereARunFailsAndAsksAgain)
{
    installGsettings("one");
    auto setting = make(0ms);
    EXPECT_TRUE(answers(setting, "one"));
    fs::rename(home / "answer", home / "none");
    write("database", "changed");
    EXPECT_TRUE(hasRun(setting, 3)) << "the database is the same";
    EXPECT_EQ(setting.lastKnown(), "one");
    write("new answer", "two");
    fs::rename(home / "new answer", home / "answer");
    EXPECT_TRUE(answers(setting, "two"));
}

TEST_F(BackgroundSettingTest, AsksOnceMoreWhereTheFirstRunFails)
{
    installGsettings("one");
    const std::string mark = "'" + (home / "mark").native() + "'";
    write(
        "gsettings",
        "#!/bin/sh\n[ -e " + mark + " ] && echo one && exit\n: > " + mark + "\nexit 1");
    auto setting = make(0ms, 10min);
    EXPECT_TRUE(answers(setting, "one\n"));
}

// Whatever was written to the database, two programs were run for settings that were not there.
TEST_F(BackgroundSettingTest, AsksSeldomForWhatIsNotTold)
{
    installGsettings("one");
    fs::rename(home / "answer", home / "none");
    auto seldom = make(0ms, 10min);
    EXPECT_TRUE(hasRun(seldom, 2));
    for (int i = 0; i < 10; ++i) {
        write("database", std::to_string(i));
        seldom.lastKnown();
        dispatch.runUntil([] { return false; }, 10ms);
    }
    EXPECT_EQ(runCount(), 2u);

    auto often = make(0ms);
    EXPECT_TRUE(hasRun(often, 5));
    fs::rename(home / "none", home / "answer");
    EXPECT_TRUE(answers(often, "one"));
}

TEST_F(BackgroundSettingTest, MayGoWhileTheProgramRuns)
{
    installGsettings("one");
    {
        auto setting = make(0ms);
        setting.lastKnown();
    }
    dispatch.runUntil([] { return false; }, 50ms);
}

TEST(OutputOfTest, IsAllThatTheProgramWrote)
{
    EXPECT_EQ(outputOf("/bin/echo", {"-n", "a b", "c"}), "a b c");
    EXPECT_EQ(outputOf("/bin/true", {}), "");
    EXPECT_EQ(outputOf("/bin/sh", {"-c", "echo wrong >&2; echo right"}), "right\n");
    const auto many = outputOf("/usr/bin/head", {"-c", "1000000", "/dev/zero"});
    EXPECT_EQ(many.value_or("").size(), 1'000'000u);
}

TEST(OutputOfTest, IsEmptyWhereTheProgramFails)
{
    EXPECT_EQ(outputOf("/nowhere/program", {}), std::nullopt);
    EXPECT_EQ(outputOf("/bin/sh", {"-c", "echo text; exit 3"}), std::nullopt);
}

} // namespace

} // namespace tallowbay::posix
