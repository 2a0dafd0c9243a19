#include "platform/x11/keys/X11KeyPoster.h"

#include "platform/contract/KeyPosterContract.h"
#include "platform/x11/XcbXkb.h"
#include "platform/x11/keys/X11TestKeys.h"

namespace tallowbay::x11 {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr HardwareKey placeOfPeriod = 60;
constexpr HardwareKey placeOfA = 38;
constexpr SeenKey pasteKey{placeOfV, XCB_MOD_MASK_CONTROL};

class X11KeyPosterBackend {
public:
    X11KeyPosterBackend() { program.takeFocus(); }
    KeyPoster& poster() { return keyPoster; }
    std::vector<KeyPress> seen()
    {
        desktop.settle();
        std::vector<KeyPress> presses;
        for (const SeenKey& key : pressesOf(program))
            presses.push_back({*codeAtPlace(key.key), flagsOf(key.modifiers)});
        return presses;
    }
    bool anythingIsDown()
    {
        desktop.settle();
        return !keysDown(program).empty();
    }

private:
    X11TestDesktop desktop;
    X11Keyboard keyboard{*desktop.session};
    X11KeyPoster keyPoster{*desktop.session, keyboard};
    test::XClient program{desktop.server.display()};
};

// Types Command+V into a focused program.
class Paster {
public:
    explicit Paster(X11TestDesktop& desktop)
        : desktop(desktop)
    {
        program.takeFocus();
    }

    std::vector<SeenKey> paste()
    {
        desktop.settle();
        pressesOf(program);
        poster.post(keyCode::v, KeyDirection::down, eventFlag::command);
        poster.post(keyCode::v, KeyDirection::up, eventFlag::command);
        desktop.settle();
        return pressesOf(program);
    }

    std::vector<HardwareKey> down()
    {
        desktop.settle();
        return keysDown(program);
    }

    std::uint8_t modifiers()
    {
        desktop.settle();
        return owned(xcb_xkb_get_state_reply(
                         desktop.session->connection(),
                         xcb_xkb_get_state(desktop.session->connection(), XCB_XKB_ID_USE_CORE_KBD),
                         nullptr))
            ->mods;
    }

    X11TestDesktop& desktop;
    X11Keyboard keyboard{*desktop.session};
    X11KeyPoster poster{*desktop.session, keyboard};
    test::XClient program{desktop.server.display()};
};

class X11KeyPosterTest : public testing::Test {
protected:
    X11TestDesktop desktop;
    Paster paster{desktop};

    void xdotool(const std::string& action, const std::string& keys)
    {
        EXPECT_EQ(desktop.server.run({"xdotool", action, keys}).status, 0);
    }

    // A modifier key, held by another program, as by a screen keyboard or from afar.
    void expectExactPasteWhileHeld(const std::string& key)
    {
        xdotool("keydown", key);
        EXPECT_THAT(paster.paste(), ElementsAre(pasteKey)) << key;
        EXPECT_THAT(paster.down(), IsEmpty()) << key;
        xdotool("keyup", key);
        EXPECT_EQ(paster.modifiers(), 0) << key;
    }

    void lock(unsigned modifiers)
    {
        lockGroup(paster.program, 0);
        xcb_xkb_latch_lock_state(
            paster.program.connection(), XCB_XKB_ID_USE_CORE_KBD, 0xff, std::uint8_t(modifiers), 0,
            0, 0, 0, 0);
        paster.program.sync();
        EXPECT_EQ(paster.modifiers(), modifiers);
    }
};

// The same with a keyboard whose keys are held by a hand.
class X11KeyPosterDeviceTest : public testing::Test {
protected:
    PhysicalKeyboard hand;
    X11TestDesktop desktop{hand.makeInner()};
    Paster paster{desktop};

    void hold(const std::string& key, std::uint8_t modifiers)
    {
        hand.down(key);
        EXPECT_TRUE(desktop.run([&] { return paster.modifiers() == modifiers; })) << key;
    }

    void letGo(const std::string& key)
    {
        hand.up(key);
        EXPECT_TRUE(desktop.run([&] { return paster.modifiers() == 0; })) << key;
        EXPECT_THAT(paster.down(), IsEmpty()) << key;
    }

    std::vector<SeenKey> typed(const std::string& key)
    {
        hand.press(key);
        std::vector<SeenKey> seen;
        desktop.run([&] { return !(seen = pressesOf(paster.program)).empty(); });
        return seen;
    }
};

} // namespace

TEST_F(X11KeyPosterTest, PressesCtrlAndV)
{
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    EXPECT_THAT(paster.down(), IsEmpty());
    EXPECT_EQ(paster.modifiers(), 0);
}

TEST_F(X11KeyPosterTest, ReleasesWhatWouldChangeTheShortcut)
{
    for (const char* key : {"shift", "Shift_R", "alt", "super", "Alt_R"})
        expectExactPasteWhileHeld(key);
}

TEST_F(X11KeyPosterTest, ReleasesAKeyThatShiftsLevels)
{
    desktop.server.setKeyboard({"-layout", "de"});
    expectExactPasteWhileHeld("ISO_Level3_Shift");
}

TEST_F(X11KeyPosterTest, LeavesACtrlThatIsHeldToWhoHoldsIt)
{
    xdotool("keydown", "ctrl");
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    EXPECT_EQ(paster.modifiers(), XCB_MOD_MASK_CONTROL);
    xdotool("keyup", "ctrl");
    EXPECT_EQ(paster.modifiers(), 0);
}

TEST_F(X11KeyPosterTest, ReleasesShiftWhileCtrlIsHeld)
{
    xdotool("keydown", "ctrl+shift");
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    EXPECT_EQ(paster.modifiers(), XCB_MOD_MASK_CONTROL);
    xdotool("keyup", "ctrl+shift");
    EXPECT_EQ(paster.modifiers(), 0);
}

TEST_F(X11KeyPosterTest, PressesAKeyAnewThatIsHeld)
{
    xdotool("keydown", "v");
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    EXPECT_THAT(paster.down(), IsEmpty());
    xdotool("keyup", "v");
}

TEST_F(X11KeyPosterTest, UndoesALockThatWouldChangeTheShortcut)
{
    for (const unsigned locked :
         {XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_1, XCB_MOD_MASK_4, XCB_MOD_MASK_5}) {
        lock(locked);
        EXPECT_THAT(paster.paste(), ElementsAre(pasteKey)) << locked;
        EXPECT_EQ(paster.modifiers(), 0);
    }
}

TEST_F(X11KeyPosterTest, UndoesALatchThatWouldChangeTheShortcut)
{
    desktop.server.setKeyboard({"-layout", "de"});
    ASSERT_EQ(desktop.server.run({"xmodmap", "-e", "keycode 96 = ISO_Level3_Latch"}).status, 0);
    xdotool("key", "96");
    ASSERT_EQ(paster.modifiers(), XCB_MOD_MASK_5);
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    EXPECT_EQ(paster.modifiers(), 0);
}

TEST_F(X11KeyPosterTest, LeavesCapsLockAndNumLockOn)
{
    for (const unsigned locked :
         {unsigned(XCB_MOD_MASK_LOCK), unsigned(XCB_MOD_MASK_2),
          unsigned(XCB_MOD_MASK_LOCK) | XCB_MOD_MASK_2}) {
        lock(locked);
        EXPECT_THAT(paster.paste(), ElementsAre(SeenKey{placeOfV, XCB_MOD_MASK_CONTROL | locked}));
        EXPECT_EQ(paster.modifiers(), locked);
    }
}

TEST_F(X11KeyPosterTest, FindsTheVOfEveryLayout)
{
    const std::pair<const char*, HardwareKey> layouts[] = {
        {"us", placeOfV}, {"de", placeOfV},    {"fr", placeOfV}, {"dvorak", placeOfPeriod},
        {"ru", placeOfV}, {"us,ru", placeOfV}, {"us", placeOfV}};
    for (const auto& [layout, key] : layouts) {
        desktop.server.setKeyboard({"-layout", layout});
        EXPECT_THAT(paster.paste(), ElementsAre(SeenKey{key, XCB_MOD_MASK_CONTROL})) << layout;
        EXPECT_THAT(paster.down(), IsEmpty()) << layout;
    }
}

TEST_F(X11KeyPosterTest, FindsTheVInASecondGroup)
{
    desktop.server.setKeyboard({"-layout", "us,ru"});
    lockGroup(paster.program, 1);
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    desktop.server.setKeyboard({"-layout", "us,us", "-variant", ",dvorak"});
    lockGroup(paster.program, 1);
    EXPECT_THAT(paster.paste(), ElementsAre(SeenKey{placeOfPeriod, XCB_MOD_MASK_CONTROL}));
}

TEST_F(X11KeyPosterTest, TypesNothingForACodeThatNoKeyHas)
{
    paster.poster.post(1000, KeyDirection::down, eventFlag::command);
    paster.poster.post(1000, KeyDirection::up, eventFlag::command);
    EXPECT_THAT(paster.down(), IsEmpty());
    EXPECT_THAT(pressesOf(paster.program), IsEmpty());
}

TEST_F(X11KeyPosterTest, PostingDownTwiceLeavesNothingDown)
{
    paster.poster.post(keyCode::v, KeyDirection::down, eventFlag::command);
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    EXPECT_THAT(paster.down(), IsEmpty());
}

TEST_F(X11KeyPosterTest, ReleasesWhatIsDownWhenItEnds)
{
    X11KeyPoster(*desktop.session, paster.keyboard)
        .post(keyCode::v, KeyDirection::down, eventFlag::command);
    EXPECT_THAT(paster.down(), IsEmpty());
}

TEST(X11KeyPosterManagerTest, TypesIntoTheWindowThatTheManagerHasFocused)
{
    X11TestDesktop desktop;
    desktop.server.startWindowManager();
    Paster paster(desktop);
    test::XClient other(desktop.server.display());
    other.takeFocus();
    EXPECT_THAT(paster.paste(), IsEmpty());
    EXPECT_THAT(pressesOf(other), ElementsAre(pasteKey));
    paster.program.takeFocus();
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    EXPECT_THAT(pressesOf(other), IsEmpty());
}

TEST_F(X11KeyPosterTest, DoesNothingAfterTheEndOfTheServer)
{
    desktop.server.kill();
    paster.poster.post(keyCode::v, KeyDirection::down, eventFlag::command);
    paster.poster.post(keyCode::v, KeyDirection::up, eventFlag::command);
    EXPECT_TRUE(desktop.run([&] { return desktop.lostCount == 1; }));
}

TEST_F(X11KeyPosterDeviceTest, ReleasesWhatWouldChangeTheShortcut)
{
    const std::pair<const char*, std::uint8_t> keys[] = {
        {"shift", XCB_MOD_MASK_SHIFT}, {"alt", XCB_MOD_MASK_1}, {"super", XCB_MOD_MASK_4}};
    for (const auto& [key, modifier] : keys) {
        hold(key, modifier);
        EXPECT_THAT(paster.paste(), ElementsAre(pasteKey)) << key;
        EXPECT_EQ(paster.modifiers(), 0) << key;
        letGo(key);
        EXPECT_THAT(typed("a"), ElementsAre(SeenKey{placeOfA, 0})) << key;
    }
}

TEST_F(X11KeyPosterDeviceTest, LeavesCtrlToTheHandThatHoldsIt)
{
    hold("ctrl", XCB_MOD_MASK_CONTROL);
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    EXPECT_EQ(paster.modifiers(), XCB_MOD_MASK_CONTROL);
    EXPECT_THAT(typed("a"), ElementsAre(SeenKey{placeOfA, XCB_MOD_MASK_CONTROL}));
    letGo("ctrl");
    EXPECT_THAT(typed("a"), ElementsAre(SeenKey{placeOfA, 0}));
}

TEST_F(X11KeyPosterDeviceTest, PastesOnceMoreWhileTheHandStillHoldsItsOwnPaste)
{
    hold("ctrl", XCB_MOD_MASK_CONTROL);
    hand.down("v");
    EXPECT_TRUE(desktop.run([&] { return !pressesOf(paster.program).empty(); }));
    EXPECT_THAT(paster.paste(), ElementsAre(pasteKey));
    hand.up("v");
    letGo("ctrl");
    EXPECT_THAT(typed("v"), ElementsAre(SeenKey{placeOfV, 0}));
}

} // namespace tallowbay::x11

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, KeyPosterContract, x11::X11KeyPosterBackend);
} // namespace tallowbay::contract
