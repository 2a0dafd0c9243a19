#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/SessionBus.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <stdexcept>

namespace tallowbay::test {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using Words = std::vector<std::string>;

// Keys by their places on the keyboard, where the layout does not matter.
constexpr std::uint8_t keyZ = 52, keyEscape = 9, keySpace = 65;

// What the user's shortcuts do to the program, and what the shortcuts of the desktop do.
class HotkeysAndCommandsTest : public testing::Test {
protected:
    void launch()
    {
        program = std::make_unique<Tallowbay>(
            server, home, Words{"env", "DBUS_SESSION_BUS_ADDRESS=" + bus.address()});
    }

    void takeScreenshots(int count)
    {
        for (int i = 1; i <= count; ++i)
            screenshots.push_back(home.takeScreenshot(i));
        ASSERT_TRUE(waitForClipboard(count));
    }

    // The files on the clipboard, as any other program is told.
    long clipboardCount() const
    {
        const auto list =
            server.run({"xclip", "-selection", "clipboard", "-o", "-t", "text/uri-list"});
        return std::ranges::count(list.output, '\n');
    }
    bool waitForClipboard(long count) const
    {
        return waitUntil([&] { return clipboardCount() == count; });
    }

    void press(const std::string& keys) const
    {
        ASSERT_EQ(server.run({"xdotool", "key", keys}).status, 0);
    }

    bool editorIsThere() const { return server.search({"--name", "^Tallowbay$"}).status == 0; }

    Environment environment() const
    {
        Environment result = server.environment();
        for (const auto& [name, value] : home.environment())
            result[name] = value;
        result["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
        return result;
    }

    Finished run(const Words& command, const Environment& environment) const
    {
        ChildProcess child(command, environment);
        const auto status = child.wait();
        return {status, child.output(), child.errors()};
    }
    Finished command(const std::string& verb) const
    {
        return run({TALLOWBAY_PROGRAM, verb}, environment());
    }

    // Any program of the desktop may ask.
    Finished callBus(const Words& arguments) const
    {
        Words call{
            "gdbus",
            "call",
            "--session",
            "--dest",
            "com.quarnel.tallowbay",
            "--object-path",
            "/com/quarnel/tallowbay",
            "--method"};
        call.insert(call.end(), arguments.begin(), arguments.end());
        return run(call, environment());
    }

    XServer server;
    Home home;
    SessionBus bus{home.environment()}; // what it starts lives there, too
    std::vector<std::filesystem::path> screenshots;
    std::unique_ptr<Tallowbay> program;
};

// Hotkeys.

TEST_F(HotkeysAndCommandsTest, UndoesAndClearsByHotkey)
{
    launch();
    takeScreenshots(3);
    press("super+ctrl+z");
    EXPECT_TRUE(waitForClipboard(2));
    press("super+ctrl+c");
    EXPECT_TRUE(waitForClipboard(0));
}

TEST_F(HotkeysAndCommandsTest, UndoesAndClearsWithTheLocksOn)
{
    press("Caps_Lock");
    press("Num_Lock");
    launch();
    takeScreenshots(2);
    press("super+ctrl+z");
    EXPECT_TRUE(waitForClipboard(1));
    press("Caps_Lock");
    press("super+ctrl+c");
    EXPECT_TRUE(waitForClipboard(0));
}

TEST_F(HotkeysAndCommandsTest, GoesByTheLayoutThatTheUserSwitchesTo)
{
    launch();
    takeScreenshots(4);
    long left = 4;
    // Until it is followed, the key of the new layout does nothing.
    const auto undo = [&](const std::string& keys) {
        return waitUntil([&] {
            press(keys);
            return clipboardCount() < left;
        });
    };
    for (const auto& [layout, keys] :
         {std::pair("de", "super+ctrl+29"), std::pair("fr", "super+ctrl+25"),
          std::pair("ru", "super+ctrl+52")}) {
        server.setKeyboard({"-layout", layout});
        EXPECT_TRUE(undo(keys)) << layout;
        --left;
        EXPECT_EQ(clipboardCount(), left) << layout;
    }
}

TEST_F(HotkeysAndCommandsTest, LeavesACombinationToTheProgramThatOwnsIt)
{
    XClient owner(server.display());
    const std::uint16_t superCtrl = XCB_MOD_MASK_4 | XCB_MOD_MASK_CONTROL;
    xcb_grab_key(
        owner.connection(), 0, owner.root(), superCtrl, keyZ, XCB_GRAB_MODE_ASYNC,
        XCB_GRAB_MODE_ASYNC);
    owner.sync();
    launch();
    takeScreenshots(2);
    press("super+ctrl+z");
    EXPECT_TRUE(owner.nextOf(XCB_KEY_PRESS));
    EXPECT_EQ(clipboardCount(), 2);
    press("super+ctrl+c");
    EXPECT_TRUE(waitForClipboard(0));
}

// Under a window manager with its own default keys, of which Alt+Space opens the menu of a window.
class EditorHotkeyTest : public HotkeysAndCommandsTest,
                         public testing::WithParamInterface<std::string> {
protected:
    EditorHotkeyTest()
    {
        startManager();
        if (GetParam() == "xfwm4")
            startAnewWithKeysCopied();
        if (!hasAltSpace())
            throw std::runtime_error(GetParam() + " does not take Alt+Space");
    }

private:
    void startManager()
    {
        server.startWindowManager(
            {"env", "DBUS_SESSION_BUS_ADDRESS=" + bus.address(), "HOME=" + home.folder().string(),
             GetParam()});
    }

    // In a new home it copies its default keys, and with each of them gives all keys back and takes
    // them anew. From then on it takes them once.
    void startAnewWithKeysCopied()
    {
        if (!waitUntil([this] { return hasCopiedItsKeys(); }))
            throw std::runtime_error(GetParam() + " does not copy its keys");
        server.endWindowManager();
        startManager();
    }

    bool hasCopiedItsKeys() const
    {
        const Words query{
            "xfconf-query", "--channel", "xfce4-keyboard-shortcuts", "--property",
            "/xfwm4/custom/override"};
        return run(query, environment()).output == "true\n";
    }

    // Tries to take it, so no manager may be about to.
    bool hasAltSpace() const
    {
        XClient probe(server.display());
        const auto grab = xcb_grab_key_checked(
            probe.connection(), 0, probe.root(), XCB_MOD_MASK_1, keySpace, XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC);
        const std::unique_ptr<xcb_generic_error_t, decltype(&std::free)> refusal(
            xcb_request_check(probe.connection(), grab), &std::free);
        return refusal != nullptr;
    }
};

TEST_P(EditorHotkeyTest, OpensAndClosesTheEditorByTheSecondChoice)
{
    launch();
    press("ctrl+alt+space");
    EXPECT_TRUE(waitUntil([this] { return editorIsThere(); }));
    press("ctrl+alt+space");
    EXPECT_TRUE(waitUntil([this] { return !editorIsThere(); }));
}

TEST_P(EditorHotkeyTest, TakesNoSecondChoiceForAHotkeyThatWasRecorded)
{
    std::ofstream(home.preferences("com.quarnel.tallowbay"))
        << R"({"onboardingCompleted": true, "hotkeyOpenClose":)"
           R"( {"keyCode": 49, "modifiers": 2048, "displayString": "Opt+Space"}})";
    launch();
    takeScreenshots(1);
    press("ctrl+alt+space");
    press("super+ctrl+c"); // is done later
    EXPECT_TRUE(waitForClipboard(0));
    EXPECT_FALSE(editorIsThere());
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, EditorHotkeyTest, testing::Values("openbox", "xfwm4"));

TEST_F(HotkeysAndCommandsTest, OpensTheEditorByItsDefaultWhereNobodyTakesIt)
{
    launch();
    press("alt+space");
    EXPECT_TRUE(waitUntil([this] { return editorIsThere(); }));
}

TEST_F(HotkeysAndCommandsTest, OpensTheEditorByCommand)
{
    launch();
    EXPECT_EQ(command("open").status, 0);
    EXPECT_TRUE(waitUntil([this] { return editorIsThere(); }));
}

class KeysAfterTheEndTest : public HotkeysAndCommandsTest {
protected:
    // The keys that arrive in the window in front, up to Escape.
    std::vector<std::uint8_t> keysBeforeEscape(XClient& window)
    {
        press("super+ctrl+" + std::to_string(keyZ));
        press("Escape");
        std::vector<std::uint8_t> keys;
        while (const auto event = window.nextOf(XCB_KEY_PRESS)) {
            const auto key = reinterpret_cast<const xcb_key_press_event_t&>(*event).detail;
            if (key == keyEscape)
                return keys;
            keys.push_back(key);
        }
        ADD_FAILURE() << "Escape does not arrive";
        return keys;
    }
};

TEST_F(KeysAfterTheEndTest, LeavesNoKeyTakenHoweverItEnds)
{
    XClient window(server.display());
    for (const int signal : {SIGTERM, SIGKILL}) {
        launch();
        window.takeFocus();
        EXPECT_THAT(keysBeforeEscape(window), testing::Not(testing::Contains(keyZ)));
        program->process.signal(signal);
        ASSERT_TRUE(program->process.wait());
        EXPECT_THAT(keysBeforeEscape(window), testing::Contains(keyZ)) << "signal " << signal;
    }
}

// Commands.

TEST_F(HotkeysAndCommandsTest, UndoesAndClearsByCommand)
{
    launch();
    takeScreenshots(3);
    const auto undone = command("undo");
    EXPECT_EQ(undone.status, 0);
    EXPECT_THAT(undone.output + undone.errors, IsEmpty());
    EXPECT_EQ(clipboardCount(), 2) << "done when the command ends";
    EXPECT_EQ(command("clear").status, 0);
    EXPECT_EQ(clipboardCount(), 0);
}

TEST_F(HotkeysAndCommandsTest, ReachesTheProgramWithoutADisplay)
{
    launch();
    takeScreenshots(1);
    auto elsewhere = environment();
    elsewhere["DISPLAY"] = std::nullopt;
    EXPECT_EQ(run({TALLOWBAY_PROGRAM, "clear"}, elsewhere).status, 0);
    EXPECT_EQ(clipboardCount(), 0);
}

TEST_F(HotkeysAndCommandsTest, QuitsByCommand)
{
    launch();
    takeScreenshots(1);
    const auto quit = command("quit");
    EXPECT_EQ(quit.status, 0) << quit.errors;
    EXPECT_EQ(program->process.wait(), 0);
    EXPECT_EQ(clipboardCount(), 0) << "its files are off the clipboard";
}

TEST_F(HotkeysAndCommandsTest, StartsForACommandThatNeedsNoScreenshots)
{
    ChildProcess started({TALLOWBAY_PROGRAM, "ocr"}, environment());
    ASSERT_TRUE(waitUntil(
        [&] { return started.output().find("Paste watcher running") != std::string::npos; }));
    const auto asksForARegion = [this] {
        return server.search({"--class", "screencapture"}).status == 0;
    };
    EXPECT_TRUE(waitUntil(asksForARegion));
    EXPECT_EQ(command("quit").status, 0);
    EXPECT_EQ(started.wait(), 0) << started.errors();
}

// It ended with status 0, and only a toast told that nothing happens.
TEST_F(HotkeysAndCommandsTest, SaysThatAWaylandSessionHidesItsScreenFromTheExtractionOfText)
{
    auto wayland = environment();
    wayland["WAYLAND_DISPLAY"] = "wayland-0";
    ChildProcess started({TALLOWBAY_PROGRAM}, wayland);
    ASSERT_TRUE(waitUntil([&] { return command("undo").status == 0; })) << started.errors();
    const auto refused = run({TALLOWBAY_PROGRAM, "ocr"}, wayland);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(
        refused.errors,
        "tallowbay: 'ocr' does not work here: this session hides its screen from programs\n");
    EXPECT_THAT(started.output(), HasSubstr("Text extraction refused: A Wayland session"));
    EXPECT_TRUE(started.running());
}

TEST_F(HotkeysAndCommandsTest, TellsHowItFares)
{
    XClient owner(server.display());
    xcb_grab_key(
        owner.connection(), 0, owner.root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_CONTROL, keyZ,
        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    owner.sync();
    launch();
    auto elsewhere = environment();
    elsewhere["DISPLAY"] = std::nullopt;
    const auto before = run({TALLOWBAY_PROGRAM, "status"}, elsewhere);
    EXPECT_EQ(before.status, 0) << before.errors;
    EXPECT_THAT(before.output, HasSubstr("Tallowbay is running.\n"));
    EXPECT_THAT(before.output, HasSubstr("\n  ~/Desktop "));
    EXPECT_THAT(before.output, HasSubstr("(not there yet)\n")) << "of the pictures";
    EXPECT_THAT(before.output, HasSubstr("No screenshot has been noticed yet.\n"));
    EXPECT_THAT(
        before.output,
        HasSubstr("Super+Ctrl+Z  takes back the last screenshot: does not work: another program"));
    EXPECT_THAT(before.output, HasSubstr("Super+Ctrl+C  clears all screenshots: works\n"));
    EXPECT_THAT(before.output, HasSubstr("Everything else works in this session.\n"));
    takeScreenshots(1);
    EXPECT_THAT(
        run({TALLOWBAY_PROGRAM, "status"}, elsewhere).output,
        HasSubstr("Noticed last: ~/Desktop/" + screenshots.front().filename().string() + ", "));
}

TEST_F(HotkeysAndCommandsTest, TellsThatItDoesNotRun)
{
    const auto answer = command("status");
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.output, "Tallowbay is not running.\n");
    EXPECT_THAT(answer.errors, IsEmpty());
}

TEST_F(HotkeysAndCommandsTest, SaysThatNothingRunsThatCouldUndo)
{
    for (const char* verb : {"undo", "clear", "quit"}) {
        const auto failed = command(verb);
        EXPECT_EQ(failed.status, 1) << verb;
        EXPECT_THAT(failed.output, IsEmpty());
        EXPECT_EQ(failed.errors, "tallowbay: Tallowbay is not running\n");
    }
}

TEST_F(HotkeysAndCommandsTest, SaysThatNothingIsReachedWithoutABus)
{
    auto noBus = environment();
    noBus["DBUS_SESSION_BUS_ADDRESS"] = std::nullopt;
    noBus["XDG_RUNTIME_DIR"] = home.folder();
    const auto failed = run({TALLOWBAY_PROGRAM, "undo"}, noBus);
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.errors, "tallowbay: there is no session bus, by which Tallowbay is reached\n");
}

TEST_F(HotkeysAndCommandsTest, SaysThatABusDoesNotAnswer)
{
    auto deadBus = environment();
    deadBus["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + (home.folder() / "nowhere").native();
    const auto failed = run({TALLOWBAY_PROGRAM, "undo"}, deadBus);
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.errors, HasSubstr("does not answer"));
}

TEST_F(HotkeysAndCommandsTest, ServesTheStandardInterfaceOfPrograms)
{
    launch();
    takeScreenshots(2);
    const std::string interface = "org.freedesktop.Application.";
    const auto activate = [&](const std::string& action) {
        return callBus({interface + "ActivateAction", action, "[]", "{}"});
    };
    const auto undone = activate("undo");
    EXPECT_EQ(undone.status, 0) << undone.errors;
    EXPECT_EQ(clipboardCount(), 1);
    EXPECT_THAT(activate("nonsense").errors, HasSubstr("InvalidArgs"));
    EXPECT_THAT(callBus({interface + "Undo"}).errors, HasSubstr("UnknownMethod"));
    EXPECT_THAT(
        callBus({"org.freedesktop.DBus.Introspectable.Introspect"}).output,
        HasSubstr("org.freedesktop.Application"));
    EXPECT_EQ(clipboardCount(), 1);
}

} // namespace

} // namespace tallowbay::test
