#include "platform/x11/keys/X11Hotkeys.h"

#include "platform/contract/HotkeysContract.h"
#include "platform/x11/X11TestDesktop.h"
#include "platform/x11/XcbXkb.h"
#include "platform/x11/keys/X11KeyTap.h"

#include <gmock/gmock.h>

#include <xcb/xtest.h>

namespace tallowbay::x11 {
namespace {

using namespace std::chrono_literals;
using test::XClient;
using testing::ElementsAre;
using testing::IsEmpty;

// Keys by their places on the keyboard.
namespace place {
constexpr HardwareKey ctrl = 37, shift = 50, alt = 64, super = 133;
constexpr HardwareKey capsLock = 66, numLock = 77, scrollLock = 78;
constexpr HardwareKey escape = 9, w = 25, y = 29, a = 38, z = 52, x = 53, c = 54;
constexpr HardwareKey space = 65;
} // namespace place

// Plays a user's hands.
class Hands {
public:
    explicit Hands(const std::string& display)
        : client(display)
    {
    }

    void down(HardwareKey key) { send(XCB_KEY_PRESS, key); }
    void up(HardwareKey key) { send(XCB_KEY_RELEASE, key); }
    void tap(HardwareKey key)
    {
        down(key);
        up(key);
    }
    void tap(const std::vector<HardwareKey>& held, HardwareKey key)
    {
        for (const auto modifier : held)
            down(modifier);
        tap(key);
        for (const auto modifier : held)
            up(modifier);
    }

private:
    void send(std::uint8_t type, HardwareKey key)
    {
        xcb_test_fake_input(client.connection(), type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        client.sync();
    }

    XClient client;
};

std::vector<HardwareKey> keysOf(HotkeyModifiers modifiers)
{
    std::vector<HardwareKey> keys;
    if (modifiers & hotkeyModifier::command)
        keys.push_back(place::ctrl);
    if (modifiers & hotkeyModifier::shift)
        keys.push_back(place::shift);
    if (modifiers & hotkeyModifier::option)
        keys.push_back(place::alt);
    if (modifiers & hotkeyModifier::control)
        keys.push_back(place::super);
    return keys;
}

struct X11HotkeysBackend {
    X11TestDesktop desktop;
    std::unique_ptr<X11Hotkeys> linuxHotkeys =
        std::make_unique<X11Hotkeys>(*desktop.session, desktop.dispatch);
    Hands hands{desktop.server.display()};
    std::optional<XClient> manager{desktop.server.display()};

    Hotkeys& hotkeys() { return *linuxHotkeys; }
    void press(KeyCode keyCode, HotkeyModifiers modifiers)
    {
        hands.tap(keysOf(modifiers), *placeOfCode(keyCode));
    }
    // With Num Lock only, as careless programs do.
    void takeElsewhere(KeyCode keyCode, HotkeyModifiers modifiers)
    {
        const auto mask = X11Modifiers().maskOf(modifiers) | XCB_MOD_MASK_2;
        manager->setValues(
            manager->root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", {manager->window()});
        xcb_grab_key(
            manager->connection(), 0, manager->root(), mask, *placeOfCode(keyCode),
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        manager->sync();
    }
    void giveBackElsewhere(KeyCode, HotkeyModifiers) { manager.reset(); }
    bool runUntil(const std::function<bool()>& condition) { return desktop.run(condition); }
    void pass(std::chrono::milliseconds time)
    {
        desktop.dispatch.runUntil([] { return false; }, time);
    }
};

constexpr HotkeyModifiers superCtrl = hotkeyModifier::control | hotkeyModifier::command;
constexpr HotkeyModifiers ctrlShift = hotkeyModifier::command | hotkeyModifier::shift;
constexpr HotkeyId ocr{0x53534F58, 1}, openClose{0x5353414E, 2}, undo{0x5353554C, 4},
    clear{0x5353434C, 5};

class X11HotkeysTest : public testing::Test {
protected:
    X11HotkeysTest()
    {
        desktop.server.setKeyboard({"-layout", "us"});
        makeHotkeys();
        window.takeFocus();
    }

    void makeHotkeys()
    {
        tokens.clear();
        hotkeys = std::make_unique<X11Hotkeys>(*desktop.session, desktop.dispatch);
        handling = hotkeys->install([this](HotkeyId id) { pressed.push_back(id.id); });
        add(7, ctrlShift, ocr);
        add(49, hotkeyModifier::option, openClose);
        add(6, superCtrl, undo);
        add(8, superCtrl, clear);
    }

    bool add(KeyCode keyCode, HotkeyModifiers modifiers, HotkeyId id)
    {
        auto token = hotkeys->registerHotkey(keyCode, modifiers, id);
        const bool taken = token.has_value();
        if (taken)
            tokens.push_back(std::move(*token));
        return taken;
    }

    // What was reported after the presses.
    std::vector<std::uint32_t> reported()
    {
        desktop.settle();
        return std::exchange(pressed, {});
    }

    void pressAll()
    {
        hands.tap({place::ctrl, place::shift}, place::x);
        hands.tap({place::alt}, place::space);
        hands.tap({place::super, place::ctrl}, place::z);
        hands.tap({place::super, place::ctrl}, place::c);
    }

    // The next key that arrives in the window in front; modifiers do not count.
    std::optional<HardwareKey> nextKey(std::chrono::milliseconds limit = 20s)
    {
        while (const auto event = window.nextOf(XCB_KEY_PRESS, limit)) {
            const auto key = reinterpret_cast<xcb_key_press_event_t&>(*event).detail;
            const auto held = {place::ctrl,     place::shift,   place::alt,       place::super,
                               place::capsLock, place::numLock, place::scrollLock};
            if (std::ranges::find(held, key) == held.end())
                return key;
        }
        return std::nullopt;
    }

    // Whether a chord reaches the window in front.
    bool passes(const std::vector<HardwareKey>& held, HardwareKey key)
    {
        // The server is to handle what we gave up before it handles the keys.
        desktop.session->serverTime();
        window.sync();
        while (window.next(0ms)) { }
        hands.tap(held, key);
        hands.tap(place::escape);
        const auto first = nextKey();
        if (first == place::escape)
            return false;
        EXPECT_EQ(first, key);
        EXPECT_EQ(nextKey(), place::escape);
        return true;
    }

    void setKeyboard(const std::vector<std::string>& arguments)
    {
        desktop.server.setKeyboard(arguments);
    }

    // As the desktop's own switch does it.
    void activateLayout(std::uint8_t number)
    {
        auto* server = window.connection();
        xcb_xkb_use_extension(server, 1, 0);
        xcb_xkb_latch_lock_state(server, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, number, 0, 0, 0);
        window.sync();
    }

    // Presses until it is reported: a change of the layout is followed within a moment.
    bool followsTo(const std::vector<HardwareKey>& held, HardwareKey key, HotkeyId id)
    {
        return desktop.run([&] {
            hands.tap(held, key);
            const auto ids = reported();
            return std::ranges::find(ids, id.id) != ids.end();
        });
    }

    X11TestDesktop desktop;
    Hands hands{desktop.server.display()};
    XClient window{desktop.server.display()};
    std::unique_ptr<X11Hotkeys> hotkeys;
    std::vector<std::uint32_t> pressed;
    std::vector<Subscription> tokens;
    Subscription handling;
};

// Locks.

TEST_F(X11HotkeysTest, WorksWithEveryLockOn)
{
    pressAll();
    EXPECT_THAT(reported(), ElementsAre(1, 2, 4, 5));
    hands.tap(place::capsLock);
    pressAll();
    EXPECT_THAT(reported(), ElementsAre(1, 2, 4, 5)) << "Caps Lock";
    hands.tap(place::numLock);
    pressAll();
    EXPECT_THAT(reported(), ElementsAre(1, 2, 4, 5)) << "Caps Lock, Num Lock";
    hands.tap(place::capsLock);
    pressAll();
    EXPECT_THAT(reported(), ElementsAre(1, 2, 4, 5)) << "Num Lock";
}

TEST_F(X11HotkeysTest, WorksWithScrollLockAsAModifier)
{
    // Scroll Lock is none by default.
    ASSERT_EQ(
        desktop.server.run({"xmodmap", "-e", "add mod3 = Scroll_Lock"}).status.value_or(1), 0);
    makeHotkeys();
    hands.tap(place::scrollLock);
    hands.tap(place::numLock);
    hands.tap(place::capsLock);
    pressAll();
    EXPECT_THAT(reported(), ElementsAre(1, 2, 4, 5));
}

// Keys.

TEST_F(X11HotkeysTest, KeepsItsKeysFromTheProgramInFront)
{
    EXPECT_FALSE(passes({place::super, place::ctrl}, place::z));
    EXPECT_FALSE(passes({place::alt}, place::space));
    EXPECT_THAT(reported(), ElementsAre(4, 2));
}

TEST_F(X11HotkeysTest, LeavesEveryOtherCombinationToTheProgramInFront)
{
    EXPECT_TRUE(passes({place::ctrl}, place::z));
    EXPECT_TRUE(passes({place::super}, place::z));
    EXPECT_TRUE(passes({}, place::z));
    EXPECT_TRUE(passes({place::super, place::ctrl, place::shift}, place::z));
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::y));
    EXPECT_TRUE(passes({}, place::space));
    EXPECT_THAT(reported(), IsEmpty());
}

TEST_F(X11HotkeysTest, ReportsAKeyThatIsHeldOnce)
{
    ASSERT_EQ(desktop.server.run({"xset", "r", "rate", "100", "50"}).status, 0);
    hands.down(place::super);
    hands.down(place::ctrl);
    hands.down(place::z);
    desktop.dispatch.runUntil([] { return false; }, 600ms); // two dozen repetitions
    hands.up(place::z);
    EXPECT_THAT(reported(), ElementsAre(4));

    hands.tap(place::z);
    EXPECT_THAT(reported(), ElementsAre(4));
    hands.up(place::ctrl);
    hands.up(place::super);
}

TEST_F(X11HotkeysTest, ReportsAKeyWhoseReleaseWentElsewhere)
{
    hands.down(place::super);
    hands.down(place::ctrl);
    hands.down(place::z);
    hands.down(place::c);
    hands.up(place::z); // the server lets go of the keyboard
    hands.up(place::c);
    EXPECT_THAT(reported(), ElementsAre(4, 5));
    hands.tap(place::c);
    EXPECT_THAT(reported(), ElementsAre(5));
    hands.up(place::ctrl);
    hands.up(place::super);
}

TEST_F(X11HotkeysTest, TakesTheRightModifiersForTheLeft)
{
    constexpr HardwareKey rightCtrl = 105, rightShift = 62, rightSuper = 134;
    hands.tap({rightCtrl, rightShift}, place::x);
    hands.tap({rightSuper, rightCtrl}, place::c);
    EXPECT_THAT(reported(), ElementsAre(1, 5));
}

// Layouts.

TEST_F(X11HotkeysTest, GoesByTheLettersOfTheLayout)
{
    setKeyboard({"-layout", "de"});
    makeHotkeys();
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::z)); // types y
    EXPECT_FALSE(passes({place::super, place::ctrl}, place::y)); // types z
    EXPECT_THAT(reported(), ElementsAre(4));

    setKeyboard({"-layout", "fr"});
    makeHotkeys();
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::z)); // types w
    EXPECT_FALSE(passes({place::super, place::ctrl}, place::w)); // types z
    EXPECT_THAT(reported(), ElementsAre(4));
}

TEST_F(X11HotkeysTest, GoesByThePlaceWhereNoLayoutHasTheLetter)
{
    setKeyboard({"-layout", "ru"});
    makeHotkeys();
    pressAll();
    EXPECT_THAT(reported(), ElementsAre(1, 2, 4, 5));
}

TEST_F(X11HotkeysTest, FollowsAChangeOfTheLayout)
{
    for (const auto& [name, key] :
         {std::pair("de", place::y), std::pair("fr", place::w), std::pair("ru", place::z),
          std::pair("us", place::z)}) {
        setKeyboard({"-layout", name});
        EXPECT_TRUE(followsTo({place::super, place::ctrl}, key, undo)) << name;
    }
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::y));
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::w));
}

TEST_F(X11HotkeysTest, FollowsTheActiveOneOfSeveralLayouts)
{
    setKeyboard({"-layout", "us,de,ru"});
    ASSERT_TRUE(followsTo({place::super, place::ctrl}, place::z, undo));
    activateLayout(1); // de
    EXPECT_TRUE(followsTo({place::super, place::ctrl}, place::y, undo));
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::z));
    activateLayout(2); // ru
    EXPECT_TRUE(followsTo({place::super, place::ctrl}, place::z, undo));
    hands.tap(place::capsLock);
    hands.tap(place::numLock);
    pressAll();
    EXPECT_THAT(reported(), ElementsAre(1, 2, 4, 5));
}

TEST_F(X11HotkeysTest, TellsThatAnotherLayoutMayHaveWhatWasRefused)
{
    bool told = false;
    const auto watching = hotkeys->watchForFreed([&] { told = true; });
    desktop.server.setKeyboard({"-layout", "de"});
    EXPECT_TRUE(desktop.run([&] { return told; }));
}

// Two programs want Super+Ctrl with other letters, which share a key in the layouts us and de.
TEST_F(X11HotkeysTest, SaysWhatAnotherLayoutHasLostAndWhatIsBack)
{
    XClient owner(desktop.server.display());
    xcb_grab_key(
        owner.connection(), 0, owner.root(), X11Modifiers().maskOf(superCtrl), place::y,
        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    owner.sync();
    int told = 0;
    const auto watching = hotkeys->watchForFreed([&] { ++told; });
    EXPECT_TRUE(hotkeys->reaches(undo));
    setKeyboard({"-layout", "de"});
    EXPECT_TRUE(desktop.run([&] { return told == 1; }));
    EXPECT_FALSE(hotkeys->reaches(undo));
    EXPECT_TRUE(hotkeys->reaches(clear));
    setKeyboard({"-layout", "us"});
    EXPECT_TRUE(desktop.run([&] { return hotkeys->reaches(undo); }));
}

TEST_F(X11HotkeysTest, FollowsNumLockToAnotherModifier)
{
    for (const char* change : {"clear mod2", "clear mod3", "add mod3 = Num_Lock"})
        ASSERT_EQ(desktop.server.run({"xmodmap", "-e", change}).status, 0);
    hands.tap(place::numLock);
    EXPECT_TRUE(followsTo({place::super, place::ctrl}, place::z, undo));
}

// The key tap.

class X11HotkeysBesideTheKeyTapTest : public X11HotkeysTest {
protected:
    static constexpr HardwareKey v = 55;

    X11Keyboard keyboard{*desktop.session};
    X11KeyTap tap{*desktop.session, keyboard};
    // What the main queue hears of both, a hotkey as its id.
    std::vector<std::string> heard;
    std::optional<Subscription> tapping = tap.start([this](const KeyPress& press) {
        desktop.dispatch.mainAsync([this, press] {
            if (press.keyCode == keyCode::v)
                heard.push_back("paste");
            if (press == KeyPress{6, eventFlag::command | eventFlag::control})
                heard.push_back("undo seen");
        });
    });

    void listen()
    {
        handling = hotkeys->install(
            [this](HotkeyId id) { heard.push_back("hotkey " + std::to_string(id.id)); });
    }
};

TEST_F(X11HotkeysBesideTheKeyTapTest, BothHearOfAHotkeyOnce)
{
    listen();
    hands.down(place::super);
    hands.tap({place::ctrl}, place::z);
    hands.up(place::super);
    EXPECT_FALSE(passes({place::super, place::ctrl}, place::c));
    desktop.settle();
    EXPECT_THAT(heard, testing::UnorderedElementsAre("undo seen", "hotkey 4", "hotkey 5"));
}

TEST_F(X11HotkeysBesideTheKeyTapTest, PastesAndHotkeysAreHeardInTheOrderOfTheirPresses)
{
    listen();
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(passes({place::ctrl}, v));
        hands.tap({place::super, place::ctrl}, place::c);
    }
    desktop.settle();
    ASSERT_EQ(heard.size(), 10u);
    for (std::size_t i = 0; i < heard.size(); ++i)
        EXPECT_EQ(heard[i], i % 2 == 0 ? "paste" : "hotkey 5");
}

TEST_F(X11HotkeysBesideTheKeyTapTest, FollowTheLayoutAlsoAfterTheTapHasEnded)
{
    tapping.reset();
    setKeyboard({"-layout", "us,de"});
    ASSERT_TRUE(followsTo({place::super, place::ctrl}, place::z, undo));
    activateLayout(1);
    EXPECT_TRUE(followsTo({place::super, place::ctrl}, place::y, undo));
}

// Other programs.

TEST_F(X11HotkeysTest, LeavesNothingTakenOfACombinationThatIsRefused)
{
    constexpr KeyCode a = 0;
    XClient owner(desktop.server.display());
    const auto mask = X11Modifiers().maskOf(superCtrl) | XCB_MOD_MASK_LOCK;
    xcb_grab_key(
        owner.connection(), 0, owner.root(), mask, place::a, XCB_GRAB_MODE_ASYNC,
        XCB_GRAB_MODE_ASYNC);
    owner.sync();
    EXPECT_FALSE(add(a, superCtrl, {1, 9}));
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::a));

    hands.tap(place::capsLock);
    hands.tap({place::super, place::ctrl}, place::a);
    EXPECT_TRUE(owner.nextOf(XCB_KEY_PRESS)) << "who owns it gets it still";
}

TEST_F(X11HotkeysTest, HarmsNothingWhereTheWindowManagerOwnsACombination)
{
    tokens.clear();
    desktop.server.startWindowManager(); // owns Alt+Space
    XClient probe(desktop.server.display());
    const auto owned = [&] {
        const auto request = xcb_grab_key_checked(
            probe.connection(), 0, probe.root(), XCB_MOD_MASK_1, place::space, XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC);
        const std::unique_ptr<xcb_generic_error_t, XcbFree> error(
            xcb_request_check(probe.connection(), request));
        if (!error)
            xcb_ungrab_key(probe.connection(), place::space, probe.root(), XCB_MOD_MASK_1);
        probe.sync();
        return error != nullptr;
    };
    ASSERT_TRUE(test::waitUntil(owned));
    EXPECT_FALSE(add(49, hotkeyModifier::option, openClose));
    EXPECT_TRUE(add(8, superCtrl, clear));
    hands.tap({place::alt}, place::space);
    hands.tap(place::escape); // closes the menu that it opened
    hands.tap({place::super, place::ctrl}, place::c);
    EXPECT_TRUE(desktop.run([&] { return reported() == std::vector<std::uint32_t>{5}; }));
    EXPECT_TRUE(owned());
}

TEST_F(X11HotkeysTest, GivesTheKeysBackToTheProgramInFront)
{
    tokens.clear();
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::z));
    EXPECT_TRUE(passes({place::alt}, place::space));
}

TEST_F(X11HotkeysTest, GivesTheKeysBackWhenTheConnectionEnds)
{
    EXPECT_FALSE(passes({place::super, place::ctrl}, place::z));
    xcb_connection_t* killer = window.connection();
    xcb_kill_client(killer, desktop.session->window());
    window.sync();
    EXPECT_TRUE(desktop.run([&] { return desktop.lostCount == 1; }));
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::z));
    EXPECT_FALSE(add(0, superCtrl, {1, 9}));
    tokens.clear();
}

TEST_F(X11HotkeysTest, MayEndBeforeItsTokens)
{
    hotkeys.reset();
    tokens.clear();
    handling.reset();
    EXPECT_TRUE(passes({place::super, place::ctrl}, place::z));
}

} // namespace
} // namespace tallowbay::x11

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, HotkeysContract, x11::X11HotkeysBackend);
} // namespace tallowbay::contract
