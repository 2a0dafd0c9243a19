#include "desktop/program/EditorFixture.h"

#include <algorithm>
#include <optional>

using testing::IsSupersetOf;

namespace tallowbay::test {
namespace {

struct Manager {
    const char* name = nullptr;
    std::vector<std::string> command;
};

void PrintTo(const Manager& manager, std::ostream* out)
{
    *out << manager.name;
}

// As a desktop's panel does: above all windows, at the screen's lower edge.
class Panel {
public:
    static constexpr Rgb color = 0xff0000;
    static constexpr int height = 40;

    explicit Panel(const XServer& server)
        : client(server.display())
    {
        const xcb_window_t window = client.window();
        const std::uint32_t background[] = {color};
        xcb_change_window_attributes(client.connection(), window, XCB_CW_BACK_PIXEL, background);
        const std::uint32_t place[] = {0, 800 - height, 1280, height};
        xcb_configure_window(
            client.connection(), window,
            XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                | XCB_CONFIG_WINDOW_HEIGHT,
            place);
        client.setValues(
            window, "_NET_WM_WINDOW_TYPE", "ATOM", {client.atom("_NET_WM_WINDOW_TYPE_DOCK")});
        client.setValues(window, "WM_NORMAL_HINTS", "WM_SIZE_HINTS", atItsOwnPlace());
        client.setValues(window, "_NET_WM_STRUT", "CARDINAL", {0, 0, 0, height});
        xcb_map_window(client.connection(), window);
        client.sync();
    }

private:
    static std::vector<std::uint32_t> atItsOwnPlace()
    {
        std::vector<std::uint32_t> hints(18);
        hints[0] = 1; // that the user chose the place
        return hints;
    }

    XClient client;
};

// The editor among other windows, under the window managers that people use. KWin is told to let no
// program take the keyboard by itself.
class EditorManagersTest : public EditorFixture, public testing::WithParamInterface<Manager> {
protected:
    EditorManagersTest()
    {
        writeFile(home.folder() / ".config/kwinrc", "[Windows]\nFocusStealingPreventionLevel=4\n");
        Words command{"env", "DBUS_SESSION_BUS_ADDRESS=" + bus.address()};
        for (const auto& [name, value] : home.environment())
            if (value && name != "PATH")
                command.push_back(name + "=" + *value);
        command.insert(command.end(), GetParam().command.begin(), GetParam().command.end());
        server.startWindowManager(command);
    }

    // The names of the states that the window manager keeps of the editor.
    std::vector<std::string> states() const
    {
        const std::string told =
            server.run({"xprop", "-id", editorWindow(), "_NET_WM_STATE"}).output;
        std::vector<std::string> names;
        for (std::size_t at = 0; (at = told.find("_NET_WM_STATE_", at)) != std::string::npos;) {
            const auto end = told.find_first_of(",\n", at);
            names.push_back(told.substr(at, end - at));
            at = end;
        }
        return names;
    }
    std::string editorWindow() const
    {
        std::string found;
        // A toast has the same name.
        EXPECT_TRUE(waitUntil([&] {
            found = server.search({"--name", "^Tallowbay$"}).output;
            return std::ranges::count(found, '\n') == 1;
        })) << found;
        return found.substr(0, found.find('\n'));
    }
    // Once more where the editor, which stays in front, was raised in the midst of it.
    void minimize() const
    {
        const std::string id = editorWindow();
        ASSERT_TRUE(waitUntil([&] {
            server.run({"xdotool", "windowminimize", id});
            return waitUntil(
                [this] { return !editor.isShown() && activeWindow() != "Tallowbay"; },
                std::chrono::seconds(2));
        }));
    }
    std::string geometry() const
    {
        return server.run({"xdotool", "getwindowgeometry", "--shell", editorWindow()}).output;
    }
};

TEST_P(EditorManagersTest, CoversTheScreenAndEveryPanel)
{
    const Place onPanel{640, 790};
    std::optional<Panel> panel;
    // Now and then a manager that has just started leaves it out of sight.
    ASSERT_TRUE(waitUntil([&] {
        panel.emplace(server);
        return waitUntil(
            [&] { return editor.shows(onPanel, Panel::color); }, std::chrono::seconds(5));
    }));
    openEditorWith(1);
    EXPECT_TRUE(editor.waitForPixel(onPanel, 0xcc0000)) << "dimmed";
    EXPECT_THAT(geometry(), testing::HasSubstr("X=0\nY=0\nWIDTH=1280\nHEIGHT=800"));
    EXPECT_THAT(
        states(),
        IsSupersetOf(
            {"_NET_WM_STATE_FULLSCREEN", "_NET_WM_STATE_SKIP_TASKBAR",
             "_NET_WM_STATE_SKIP_PAGER"}));
    editor.press("Escape");
    EXPECT_TRUE(editor.waitForPixel(onPanel, Panel::color));
    openEditor(); // the second time as the first
    ASSERT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    EXPECT_TRUE(editor.waitForPixel(onPanel, 0xcc0000));
    EXPECT_THAT(states(), testing::Contains("_NET_WM_STATE_SKIP_TASKBAR"));
}

TEST_P(EditorManagersTest, TakesTheKeyboardAndGivesItBack)
{
    const PasteWindow target(server, home);
    ASSERT_TRUE(waitUntil([this] { return !activeWindow().empty(); }));
    const std::string name = activeWindow();
    openEditorWith(2);
    ASSERT_TRUE(waitForActive("Tallowbay"));
    editor.press("Left");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    for (int round = 0; round < 2; ++round) {
        editor.press("Return");
        ASSERT_TRUE(editor.waitUntilGone());
        ASSERT_TRUE(waitForActive(name));
        target.pressPaste();
        ASSERT_TRUE(target.waitForPastes(std::size_t(round) + 1));
        EXPECT_EQ(target.pastes().back().size(), 2u);
        openEditor();
        ASSERT_TRUE(waitForActive("Tallowbay"));
    }
}

TEST_P(EditorManagersTest, StaysInSightAndComesBackWithOneClick)
{
    const PasteWindow other(server, home);
    ASSERT_TRUE(waitUntil([this] { return !activeWindow().empty(); }));
    const std::string name = activeWindow();
    openEditorWith(2);
    ASSERT_TRUE(waitForActive("Tallowbay"));
    server.search({"--name", name, "windowactivate"});
    ASSERT_TRUE(waitForActive(name));
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
    editor.click(editor.checkbox(0)); // focuses, and acts
    EXPECT_TRUE(editor.waitForCheck(0, false));
    EXPECT_TRUE(waitForActive("Tallowbay"));
    editor.press("Left");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
}

TEST_P(EditorManagersTest, ComesBackFromBeingMinimizedWhenItIsAskedForOnce)
{
    const PasteWindow other(server, home);
    ASSERT_TRUE(waitUntil([this] { return !activeWindow().empty(); }));
    openEditorWith(2);
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(waitForActive("Tallowbay"));
        minimize();
        openEditor();
        ASSERT_TRUE(waitForActive("Tallowbay"));
        EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
        EXPECT_THAT(geometry(), testing::HasSubstr("X=0\nY=0\nWIDTH=1280\nHEIGHT=800"));
    }
    EXPECT_EQ(command("open"), 0); // closes it
    EXPECT_TRUE(editor.waitUntilGone());
    openEditor();
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
}

// Where the editor shows a picture of the desktop.
class EditorUncomposedTest : public EditorManagersTest { };

// It used to come back before the desktop as it had been.
TEST_P(EditorUncomposedTest, ComesBackByTheManagerWithoutTheDesktopOfBefore)
{
    constexpr Place corner{1270, 790}; // where no manager puts the other window
    const PasteWindow other(server, home);
    ASSERT_TRUE(waitUntil([this] { return !activeWindow().empty(); }));
    paintDesktop({1240, 760, 40, 40}, 0xff0000);
    ASSERT_TRUE(editor.waitForPixel(corner, 0xff0000));
    openEditorWith(1);
    ASSERT_TRUE(editor.waitForPixel(corner, 0xcc0000));
    const std::string id = editorWindow();
    minimize();
    paintDesktop({1240, 760, 40, 40}, 0x00ff00);
    ASSERT_TRUE(editor.waitForPixel(corner, 0x00ff00));
    server.run({"xdotool", "windowactivate", id});
    ASSERT_TRUE(waitForActive("Tallowbay"));
    ASSERT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    EXPECT_TRUE(editor.waitForPixel(corner, 0x18191e)) << std::hex << editor.pixel(corner);
}

TEST_P(EditorManagersTest, AToastIsSeenAboveIt)
{
    openEditorWith(1);
    ASSERT_TRUE(waitUntil([this] { return !editor.showsToast(); })) << "of the screenshot before";
    home.takeScreenshot(++taken);
    EXPECT_TRUE(waitUntil([this] { return editor.showsToast(); }));
    EXPECT_TRUE(waitForActive("Tallowbay"));
}

const Manager openbox{"openbox", {"openbox"}};
const Manager xfwm4{"xfwm4", {"xfwm4", "--compositor=off"}};
const Manager xfwm4Composing{"xfwm4Composing", {"xfwm4", "--compositor=on"}};
const Manager kwin{"kwin", {"KWIN_COMPOSE=N", "kwin_x11"}};

std::string managersName(const testing::TestParamInfo<Manager>& info)
{
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Manager, EditorManagersTest, testing::Values(openbox, xfwm4, xfwm4Composing, kwin),
    managersName);
INSTANTIATE_TEST_SUITE_P(
    Manager, EditorUncomposedTest, testing::Values(openbox, xfwm4, kwin), managersName);

} // namespace
} // namespace tallowbay::test
