#include "platform/x11/keys/X11KeyTap.h"

#include "platform/contract/KeyTapContract.h"
#include "platform/x11/keys/X11KeyPoster.h"
#include "platform/x11/keys/X11TestKeys.h"

#include <xcb/xtest.h>

namespace tallowbay::x11 {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr HardwareKey placeOfCtrl = 37;
constexpr KeyPress paste{keyCode::v, eventFlag::command};
constexpr KeyPress shiftedPaste{keyCode::v, eventFlag::command | eventFlag::shift};

// The server's key names, as xdotool takes them.
std::string chord(KeyCode code, EventFlags flags)
{
    std::string keys;
    for (const auto& [flag, name] :
         {std::pair(eventFlag::shift, "shift+"), std::pair(eventFlag::command, "ctrl+"),
          std::pair(eventFlag::option, "alt+"), std::pair(eventFlag::control, "super+")})
        if (flags & flag)
            keys += name;
    return keys + std::to_string(int(*placeOfCode(code)));
}

class X11KeyTapBackend {
public:
    KeyTap& tap() { return keyTap; }
    void press(KeyCode code, EventFlags flags)
    {
        desktop.server.run({"xdotool", "key", "--delay", "0", chord(code, flags)});
    }
    void holdUntilItRepeats(KeyCode code, EventFlags flags)
    {
        desktop.server.run({"xset", "r", "rate", "100", "50"});
        test::XClient program(desktop.server.display());
        program.takeFocus();
        desktop.server.run({"xdotool", "keydown", chord(code, flags)});
        int presses = 0;
        while (presses < 4 && program.nextOf(XCB_KEY_PRESS))
            ++presses;
        EXPECT_EQ(presses, 4);
        desktop.server.run({"xdotool", "keydown", chord(code, flags)});
        desktop.server.run({"xdotool", "keyup", chord(code, flags)});
    }
    void postOurselves(KeyCode code, EventFlags flags)
    {
        poster.post(code, KeyDirection::down, flags);
        poster.post(code, KeyDirection::up, flags);
    }
    void click() { desktop.server.run({"xdotool", "click", "1"}); }
    void turnWheel() { desktop.server.run({"xdotool", "click", "4", "click", "5"}); }
    void settle() { desktop.settle(); }

private:
    X11TestDesktop desktop;
    X11Keyboard keyboard{*desktop.session};
    X11KeyTap keyTap{*desktop.session, keyboard};
    X11KeyPoster poster{*desktop.session, keyboard};
};

// What the tap reports, on any desktop.
class Listener {
public:
    explicit Listener(X11TestDesktop& desktop)
        : desktop(desktop)
        , running(tap.start([this](const KeyPress& press) {
            const std::scoped_lock lock(mutex);
            reported.push_back(press);
        }))
    {
        EXPECT_TRUE(running);
    }

    // Since the last call, without modifier keys.
    std::vector<KeyPress> presses()
    {
        desktop.settle();
        const std::scoped_lock lock(mutex);
        auto list = std::exchange(reported, {});
        std::erase_if(
            list, [](const KeyPress& key) { return key.keyCode >= 54 && key.keyCode <= 62; });
        return list;
    }

    X11TestDesktop& desktop;
    X11Keyboard keyboard{*desktop.session};

private:
    X11KeyTap tap{*desktop.session, keyboard};
    std::mutex mutex;
    std::vector<KeyPress> reported;
    std::optional<Subscription> running;
};

class X11KeyTapTest : public testing::Test {
protected:
    X11TestDesktop desktop;
    Listener listener{desktop};

    // By a raw client, without the checks that a program like xdotool makes between the keys.
    static void typeAs(test::XClient& client, const std::vector<std::pair<HardwareKey, bool>>& keys)
    {
        for (const auto& [key, down] : keys)
            xcb_test_fake_input(
                client.connection(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, XCB_CURRENT_TIME,
                XCB_NONE, 0, 0, 0);
        client.sync();
    }

    void press(const std::string& keys)
    {
        EXPECT_EQ(desktop.server.run({"xdotool", "key", "--delay", "0", keys}).status, 0);
    }
};

} // namespace

TEST_F(X11KeyTapTest, ReportsThePastesOfAllPrograms)
{
    press("ctrl+v");
    press("ctrl+shift+v");
    press("shift+Insert");
    EXPECT_THAT(listener.presses(), ElementsAre(paste, shiftedPaste, shiftedPaste));
}

TEST_F(X11KeyTapTest, TakesNoOtherUseOfInsertForAPaste)
{
    press("ctrl+Insert");
    press("Insert");
    press("ctrl+shift+Insert");
    EXPECT_THAT(
        listener.presses(),
        ElementsAre(
            KeyPress{keyCode::insert, eventFlag::command}, KeyPress{keyCode::insert, 0},
            KeyPress{keyCode::insert, eventFlag::command | eventFlag::shift}));
}

TEST_F(X11KeyTapTest, HearsKeysWhileAProgramHasGrabbedTheKeyboard)
{
    test::XClient greedy(desktop.server.display());
    greedy.takeFocus();
    const auto grab = owned(xcb_grab_keyboard_reply(
        greedy.connection(),
        xcb_grab_keyboard(
            greedy.connection(), 1, greedy.window(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC),
        nullptr));
    ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    press("ctrl+v");
    EXPECT_THAT(listener.presses(), ElementsAre(paste));
}

TEST_F(X11KeyTapTest, HearsPastesWithCapsLockAndNumLockOn)
{
    press("Caps_Lock");
    press("ctrl+v");
    press("Num_Lock");
    press("ctrl+v");
    press("Caps_Lock");
    press("ctrl+v");
    auto presses = listener.presses();
    std::erase_if(presses, [](const KeyPress& press) { return press.flags == 0; });
    EXPECT_THAT(presses, ElementsAre(paste, paste, paste));
}

TEST_F(X11KeyTapTest, KnowsThePasteKeyInEveryLayout)
{
    for (const char* layout : {"us", "de", "fr", "dvorak"}) {
        desktop.server.setKeyboard({"-layout", layout});
        press("ctrl+v");
        EXPECT_THAT(listener.presses(), ElementsAre(paste)) << layout;
    }
    desktop.server.setKeyboard({"-layout", "ru"});
    press("ctrl+55");
    EXPECT_THAT(listener.presses(), ElementsAre(paste));
}

TEST_F(X11KeyTapTest, FollowsALayoutThatMovesTheV)
{
    desktop.server.setKeyboard({"-layout", "dvorak"});
    press("ctrl+60");
    press("ctrl+55");
    constexpr KeyCode k = 40;
    EXPECT_THAT(listener.presses(), ElementsAre(paste, KeyPress{k, eventFlag::command}));

    desktop.server.setKeyboard({"-layout", "us"});
    press("ctrl+55");
    EXPECT_THAT(listener.presses(), ElementsAre(paste));
}

TEST_F(X11KeyTapTest, KnowsThePasteKeyInASecondGroup)
{
    desktop.server.setKeyboard({"-layout", "us,ru"});
    test::XClient user(desktop.server.display());
    for (const std::uint8_t group : {0, 1, 0}) {
        lockGroup(user, group);
        press("ctrl+55");
        EXPECT_THAT(listener.presses(), ElementsAre(paste)) << int(group);
    }
}

TEST_F(X11KeyTapTest, DoesNotReportKeysWithoutACode)
{
    press("XF86AudioPlay");
    EXPECT_THAT(listener.presses(), IsEmpty());
}

TEST_F(X11KeyTapTest, TellsOurPressesFromOthersOfTheSameMoment)
{
    X11KeyPoster poster(*desktop.session, listener.keyboard);
    constexpr int others = 200;
    const auto typist = desktop.server.start(
        {"xdotool", "key", "--delay", "0", "--repeat", std::to_string(others), "--repeat-delay",
         "0", "v"});
    while (typist->running())
        for (int i = 0; i < 5; ++i) {
            poster.post(keyCode::v, KeyDirection::down, 0);
            poster.post(keyCode::v, KeyDirection::up, 0);
        }
    EXPECT_EQ(listener.presses().size(), std::size_t(others));
}

// The server handles another program's press between the moment in which we ask for ours and the
// one in which it gets to it.
TEST_F(X11KeyTapTest, ReportsAnothersPressThatComesJustBeforeOurs)
{
    test::XClient other(desktop.server.display());
    xcb_grab_server(other.connection());
    other.sync();
    listener.keyboard.type(placeOfV, KeyDirection::down);
    listener.keyboard.type(placeOfV, KeyDirection::up);
    xcb_flush(desktop.session->connection());
    typeAs(other, {{placeOfCtrl, true}, {placeOfV, true}, {placeOfV, false}, {placeOfCtrl, false}});
    xcb_ungrab_server(other.connection());
    other.sync();
    EXPECT_THAT(listener.presses(), ElementsAre(paste));
}

// Both presses carry the number of the same request.
TEST_F(X11KeyTapTest, ReportsAnothersPressThatComesJustAfterOurs)
{
    test::XClient other(desktop.server.display());
    listener.keyboard.type(placeOfV, KeyDirection::down);
    xcb_flush(desktop.session->connection());
    ASSERT_TRUE(test::waitUntil([&] { return !keysDown(other).empty(); }));
    typeAs(
        other,
        {{placeOfV, false},
         {placeOfCtrl, true},
         {placeOfV, true},
         {placeOfV, false},
         {placeOfCtrl, false}});
    EXPECT_THAT(listener.presses(), ElementsAre(paste));
}

TEST_F(X11KeyTapTest, OutlivesTheEndOfTheServer)
{
    desktop.server.kill();
    EXPECT_TRUE(desktop.run([&] { return desktop.lostCount == 1; }));
}

TEST(X11KeyTapSessionTest, ListensWhereKeysCanBeSeenButNotTyped)
{
    X11TestDesktop desktop(
        std::make_unique<test::XServer>(test::XServer::Options{640, 480, {"-extension", "XTEST"}}));
    X11Keyboard keyboard(*desktop.session);
    EXPECT_FALSE(desktop.session->typesKeys());
    EXPECT_TRUE(desktop.session->seesKeys());
    X11KeyTap tap(*desktop.session, keyboard);
    EXPECT_TRUE(tap.start([](const KeyPress&) {}));

    X11KeyPoster poster(*desktop.session, keyboard);
    poster.post(keyCode::v, KeyDirection::down, eventFlag::command);
    poster.post(keyCode::v, KeyDirection::up, eventFlag::command);
    desktop.settle();
    EXPECT_EQ(desktop.lostCount, 0);
}

TEST(X11KeyTapDeviceTest, HearsAKeyboardThatIsADevice)
{
    PhysicalKeyboard hand;
    X11TestDesktop desktop(hand.makeInner());
    Listener listener(desktop);
    const auto pressed = [&](const std::string& keys) {
        hand.press(keys);
        std::vector<KeyPress> presses;
        desktop.run([&] { return !(presses = listener.presses()).empty(); });
        return presses;
    };
    EXPECT_THAT(pressed("ctrl+v"), ElementsAre(paste));
    EXPECT_THAT(pressed("ctrl+shift+v"), ElementsAre(shiftedPaste));
    EXPECT_THAT(pressed("shift+Insert"), ElementsAre(shiftedPaste));
}

} // namespace tallowbay::x11

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, KeyTapContract, x11::X11KeyTapBackend);
} // namespace tallowbay::contract
