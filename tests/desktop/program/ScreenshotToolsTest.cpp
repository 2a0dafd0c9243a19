// The screenshot tools of Linux desktops, with their defaults, in a home that nobody has used yet.

#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

using namespace tallowbay::test;
namespace fs = std::filesystem;
using Paths = std::vector<fs::path>;
using Words = std::vector<std::string>;

namespace {

std::string updated(std::size_t count)
{
    return "Clipboard updated: " + std::to_string(count) + " image(s)";
}

class ScreenshotToolsTest : public testing::Test {
protected:
    ScreenshotToolsTest() { server.startWindowManager(); }

    Environment environment() const
    {
        Environment all = server.environment();
        for (const auto& [name, value] : home.environment())
            all[name] = value;
        all["NO_AT_BRIDGE"] = "1";
        return all;
    }

    // A tool in the home folder, with a session bus of its own.
    Words inHome(const Words& command) const
    {
        Words words{"env", "-C", home.folder(), "dbus-run-session", "--"};
        words.insert(words.end(), command.begin(), command.end());
        return words;
    }

    // Runs the tool; the one picture that it adds to the folder.
    fs::path take(const Words& command, const fs::path& folder)
    {
        const auto before = pictures(folder);
        ChildProcess tool(inHome(command), environment());
        EXPECT_EQ(tool.wait(), 0) << command.front() << ": " << tool.errors();
        Paths added;
        std::ranges::set_difference(pictures(folder), before, std::back_inserter(added));
        EXPECT_EQ(added.size(), 1u) << command.front() << ": " << tool.errors();
        return added.empty() ? fs::path() : added.front();
    }

    static std::set<fs::path> pictures(const fs::path& folder)
    {
        std::set<fs::path> found;
        for (const auto& entry : fs::directory_iterator(folder))
            if (entry.path().extension() == ".png")
                found.insert(entry.path());
        return found;
    }

    XServer server;
    Home home;
};

// A tool that is too big to be installed for a test is stood for by the file that it writes.
struct ToolFile {
    const char* folder;
    const char* name;
};

constexpr ToolFile toolFiles[] = {
    {"Pictures", "Screenshot_2026-01-05_10-31-12.png"}, // Xfce
    {"Pictures", "Screenshot from 2026-01-05 10-31-13.png"}, // gnome-screenshot
    {"Pictures", "Screenshot_20260105_103114.png"}, // Spectacle
    {"Pictures", "2026-01-05_10-31.png"}, // Flameshot
    {"Pictures", "20260105_10h31m16s_grim.png"},
    {"Pictures", "2026-01-05-103117_hyprshot.png"},
    {"Pictures/Screenshots", "Screenshot From 2026-01-05 10-31-18.png"}, // GNOME Shell
    {"Desktop", "Screenshot at 2026-01-05 10-31-19.png"}, // MATE
    {".", "ksnip_20260105-103120.png"},
    {".", "2026-01-05-103121_1280x800_scrot.png"},
};

class ToolFilesTest : public ScreenshotToolsTest,
                      public testing::WithParamInterface<std::string> { };

TEST_P(ToolFilesTest, AreNoticedWhateverDesktopRuns)
{
    home.runDesktop(GetParam());
    fs::create_directories(home.folder() / "Pictures/Screenshots");
    fs::create_directories(home.folder() / "Pictures/holidays");
    Tallowbay tallowbay(server, home);
    const fs::path photo = "2026-01-05 10.31.12.png", ofHolidays = "2026-01-05_10-32.png";
    writeFile(home.folder() / "Pictures" / photo, screenPicture(1));
    writeFile(home.folder() / "Pictures/holidays" / ofHolidays, screenPicture(2));
    std::size_t count = 0;
    for (const ToolFile& file : toolFiles) {
        writeFile(home.folder() / file.folder / file.name, screenPicture(3));
        EXPECT_TRUE(tallowbay.waitForLine(updated(++count))) << file.name;
    }
    for (const ToolFile& file : toolFiles)
        EXPECT_TRUE(fs::exists(home.optimized() / file.name)) << file.name;
    for (const auto& other : {photo, ofHolidays})
        EXPECT_FALSE(fs::exists(home.optimized() / other)) << other;
}

INSTANTIATE_TEST_SUITE_P(Desktops, ToolFilesTest, testing::Values("none", "GNOME", "KDE"));

TEST_F(ScreenshotToolsTest, PicturesOfSeveralToolsArriveWithOnePaste)
{
    const auto picturesFolder = home.folder() / "Pictures";
    fs::create_directories(picturesFolder);
    writeFile(home.folder() / ".config/user-dirs.dirs", "XDG_PICTURES_DIR=\"$HOME/Pictures\"\n");
    writeFile(
        home.preferences("com.quarnel.tallowbay"),
        R"({"onboardingCompleted": true, "screenshotNamePatterns": "shot-*"})");
    Tallowbay tallowbay(server, home);
    PasteWindow target(server, home);
    Paths copies;
    const auto arrives = [&](const fs::path& picture) {
        copies.push_back(home.optimized() / picture.filename());
        ASSERT_TRUE(tallowbay.waitForLine(updated(copies.size()))) << picture << "\n"
                                                                   << tallowbay.process.output();
    };
    ASSERT_NO_FATAL_FAILURE(arrives(take({"scrot"}, home.folder())));
    ASSERT_NO_FATAL_FAILURE(arrives(take({"maim", home.folder() / "shot-1.png"}, home.folder())));
    ASSERT_NO_FATAL_FAILURE(arrives(take({"gnome-screenshot"}, picturesFolder)));

    target.pressPaste();
    ASSERT_TRUE(target.waitForPastes(1));
    EXPECT_THAT(target.pastes(), testing::ElementsAre(copies));
}

// The folder is named by the tool's settings no sooner than it is saved to.
TEST_F(ScreenshotToolsTest, TheFirstPictureInAFolderThatAToolHasJustBeenToldIsNoticed)
{
    home.runDesktop("XFCE");
    const auto folder = home.folder() / "My shots";
    fs::create_directories(folder);
    Tallowbay tallowbay(server, home);
    ChildProcess tool(inHome({"xfce4-screenshooter", "-f", "-s", folder}), environment());
    ASSERT_EQ(
        server.run({"xdotool", "search", "--sync", "--onlyvisible", "--name", "Save screenshot as"})
            .status,
        0);
    ASSERT_TRUE(waitUntil([&] {
        server.run({"xdotool", "key", "Return"}); // a new dialog takes no keys for a moment
        return waitUntil([&] { return !pictures(folder).empty(); }, std::chrono::seconds(1));
    })) << tool.errors();
    EXPECT_TRUE(tallowbay.waitForLine(updated(1))) << tallowbay.process.output();
}

} // namespace
