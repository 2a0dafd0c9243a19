#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/Rival.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

#include <csignal>
#include <ctime>
#include <filesystem>

namespace tallowbay::test {

namespace {

using testing::IsEmpty;
using Words = std::vector<std::string>;

// The text in another program's window, from the hotkey to the clipboard.
class TextExtractionTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::filesystem::create_directory(temporary());
        server.run({"xsetroot", "-solid", "#306090"});
        program = std::make_unique<Tallowbay>(
            server, home, Words{"env", "TMPDIR=" + temporary().string()});
    }

    std::filesystem::path temporary() const { return home.folder() / "tmp"; }

    // What captures have for themselves, wherever temporary files can go.
    std::vector<std::filesystem::path> captureFolders() const
    {
        std::vector<std::filesystem::path> found;
        for (const auto& place : {home.folder() / "run", temporary()}) {
            for (const auto& entry : std::filesystem::directory_iterator(place)) {
                if (entry.path().filename().native().starts_with("tallowbay-"))
                    found.push_back(entry.path());
            }
        }
        return found;
    }

    // A finished capture says so.
    bool waitForToast()
    {
        return waitUntil([this] { return rival.toastWidth() > 0; })
            && waitUntil([this] { return rival.toastWidth() == 0; });
    }

    // A terminal in the upper left corner, with this text in it.
    void showText(const std::string& text)
    {
        const std::string ready = home.folder() / "shown";
        window = server.start(
            {"xterm", "-fa", "DejaVu Sans Mono", "-fs", "11", "-geometry", "60x8+40+40", "-e", "sh",
             "-c", "printf '\\033[?25l%s' \"$0\"; : >'" + ready + "'; sleep 1000", text});
        ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(ready); }));
        std::filesystem::remove(ready);
        ASSERT_TRUE(waitUntil([this] { return isDrawn(); }));
    }

    // The terminal draws when it finds the time: its text is there when the picture of the screen
    // has more than a background, a window and its border.
    bool isDrawn() const
    {
        const auto colours = server.run(
            {"sh", "-c", "import -window root -crop 500x100+44+44 png:- | identify -format %k -"});
        return colours.status == 0 && std::atoi(colours.output.c_str()) > 3;
    }

    void press(const std::string& keys) const
    {
        ASSERT_EQ(server.run({"xdotool", "key", keys}).status, 0);
    }

    void startSelecting()
    {
        press("ctrl+shift+x");
        ASSERT_TRUE(waitUntil([this] { return rival.desktopIsCovered(); }));
        ASSERT_TRUE(waitUntil([this] { return rival.keyboardIsHeldByAnother(); }));
    }

    void selectWindow() const
    {
        server.run({"xdotool", "mousemove", "30", "30", "mousedown", "1"});
        server.run({"xdotool", "mousemove", "560", "190"});
        server.run({"xdotool", "mousemove", "640", "200", "mouseup", "1"});
    }

    std::string clipboard() const
    {
        return server.run({"xclip", "-selection", "clipboard", "-o"}).output;
    }
    bool waitForClipboard(const std::string& text) const
    {
        return waitUntil([&] { return clipboard() == text; }, std::chrono::seconds(60));
    }

    XServer server;
    Home home;
    Rival rival{server.display()};
    std::unique_ptr<ChildProcess> window;
    std::unique_ptr<Tallowbay> program;
};

TEST_F(TextExtractionTest, CopiesTheLinesOfTheRegion)
{
    showText("Nobody had opened\r\nthe window of the\r\nhouse for years.");
    startSelecting();
    selectWindow();
    EXPECT_TRUE(waitForClipboard("Nobody had opened\nthe window of the\nhouse for years."))
        << clipboard();
    EXPECT_THAT(captureFolders(), IsEmpty());
}

TEST_F(TextExtractionTest, LeavesTheClipboardAloneWhenTheUserCancels)
{
    const auto owner = server.start({"xclip", "-selection", "clipboard", "-quiet"}, "before");
    ASSERT_TRUE(waitForClipboard("before"));
    startSelecting();
    press("Escape");
    // The toast comes after all that the program may do to the clipboard. Who loses that, if only
    // for a moment, ends.
    ASSERT_TRUE(waitForToast());
    EXPECT_TRUE(owner->running());
    EXPECT_EQ(clipboard(), "before");
    EXPECT_FALSE(rival.desktopIsCovered());
    EXPECT_THAT(captureFolders(), IsEmpty());

    showText("Another attempt");
    startSelecting();
    selectWindow();
    EXPECT_TRUE(waitForClipboard("Another attempt")) << clipboard();
}

TEST_F(TextExtractionTest, KeepsTheCaptureInAFolderOfTheUserAlone)
{
    startSelecting();
    const auto folders = captureFolders();
    ASSERT_EQ(folders.size(), 1u);
    EXPECT_EQ(folders[0].parent_path(), home.folder() / "run");
    EXPECT_EQ(std::filesystem::status(folders[0]).permissions(), std::filesystem::perms::owner_all);
    press("Escape");
    EXPECT_TRUE(waitUntil([this] { return captureFolders().empty(); }));
}

TEST_F(TextExtractionTest, LeavesNoFolderWhenTheProgramQuitsWhileTheUserSelects)
{
    startSelecting();
    ASSERT_EQ(captureFolders().size(), 1u);
    EXPECT_EQ(program->quit(), 0);
    EXPECT_THAT(captureFolders(), IsEmpty());
    EXPECT_TRUE(waitUntil([this] { return !rival.desktopIsCovered(); }));
}

// The screen stayed covered, by a selection of which nobody would hear.
TEST_F(TextExtractionTest, TakesTheSelectionAlongWhenTheProgramIsKilled)
{
    startSelecting();
    program->process.signal(SIGKILL);
    program->process.wait();
    EXPECT_TRUE(waitUntil([this] { return !rival.desktopIsCovered(); }));
}

// The name of the picture could be guessed, and lay in a folder that all users share: what another
// user had planted there was followed, and a file of the user's overwritten.
TEST_F(TextExtractionTest, OverwritesNoFileThroughALinkInTheSharedFolder)
{
    program.reset();
    const auto precious = home.folder() / "precious";
    writeFile(precious, "precious");
    std::filesystem::permissions(temporary(), std::filesystem::perms(01777));
    const auto now = std::time(nullptr);
    for (auto second = now; second < now + 300; ++second)
        std::filesystem::create_symlink(
            precious, temporary() / ("tallowbay_ocr_" + std::to_string(second) + ".png"));
    std::filesystem::permissions(home.folder() / "run", std::filesystem::perms(0755));
    program =
        std::make_unique<Tallowbay>(server, home, Words{"env", "TMPDIR=" + temporary().string()});

    showText("Nobody had opened");
    startSelecting();
    EXPECT_EQ(captureFolders().at(0).parent_path(), temporary());
    selectWindow();
    EXPECT_TRUE(waitForClipboard("Nobody had opened")) << clipboard();
    EXPECT_THAT(captureFolders(), IsEmpty());
    EXPECT_EQ(std::filesystem::file_size(precious), 8u);
}

TEST_F(TextExtractionTest, GathersTheTextsOfABatch)
{
    showText("The first text");
    startSelecting();
    selectWindow();
    ASSERT_TRUE(waitForClipboard("The first text")) << clipboard();
    window.reset();
    showText("And the second");
    startSelecting();
    selectWindow();
    EXPECT_TRUE(waitForClipboard("The first text\n\nAnd the second")) << clipboard();
}

TEST_F(TextExtractionTest, KeepsTheBatchThroughAPasteDuringTheCapture)
{
    showText("Read while pasting");
    home.takeScreenshot(1);
    ASSERT_TRUE(program->waitForLine("Clipboard updated: 1 image(s)"));
    startSelecting();
    press("ctrl+v");
    EXPECT_TRUE(program->waitForLine(">>> resetBatch SKIPPED — OCR in progress"));
    selectWindow();
    ASSERT_TRUE(waitForClipboard("Read while pasting")) << clipboard();
    press("ctrl+v");
    EXPECT_TRUE(program->waitForLine(">>> resetBatch — clearing 1 URL(s), 1 OCR text(s)"));
}

// The screen was covered with black, which Esc did not always take away.
class WaylandTextExtractionTest : public testing::TestWithParam<const char*> {
protected:
    Environment environment() const
    {
        Environment all = home.environment();
        all.merge(server.environment());
        return all;
    }

    XServer server;
    Home home;
    Rival rival{server.display()};
};

TEST_P(WaylandTextExtractionTest, ShowsTheReasonAndStartsNoSelection)
{
    constexpr int shortToast = 220;
    ChildProcess program({"env", GetParam(), TALLOWBAY_PROGRAM}, environment());
    EXPECT_TRUE(waitUntil([&] {
        server.run({"xdotool", "key", "ctrl+shift+x"});
        return rival.toastWidth() > shortToast;
    })) << program.errors();
    EXPECT_TRUE(waitUntil([&] { return rival.toastWidth() == 0; }));
    EXPECT_FALSE(rival.desktopIsCovered());
    EXPECT_FALSE(rival.keyboardIsHeldByAnother());
    EXPECT_TRUE(program.running());
}

// As in a window of a Wayland session.
TEST_P(WaylandTextExtractionTest, StartsOnAnXServerThatTheUserHasDecidedFor)
{
    ChildProcess program(
        {"env", GetParam(), "TALLOWBAY_DESKTOP=x11", TALLOWBAY_PROGRAM}, environment());
    EXPECT_TRUE(waitUntil([&] {
        server.run({"xdotool", "key", "ctrl+shift+x"});
        return rival.desktopIsCovered();
    })) << program.errors();
    EXPECT_EQ(program.errors(), "");
}

INSTANTIATE_TEST_SUITE_P(
    BySign, WaylandTextExtractionTest,
    testing::Values("WAYLAND_DISPLAY=wayland-0", "XDG_SESSION_TYPE=wayland"));

} // namespace

} // namespace tallowbay::test
