#pragma once

#include "platform/x11/X11TestDesktop.h"
#include "platform/x11/XcbXkb.h"
#include "platform/x11/keys/KeyRoles.h"
#include "platform/x11/keys/VirtualKeys.h"

#include <string>
#include <vector>

namespace tallowbay::x11 {

constexpr HardwareKey placeOfV = 55;

// A key as a focused program is told of it.
struct SeenKey {
    HardwareKey key;
    unsigned modifiers; // a mask of the core protocol
    bool operator==(const SeenKey&) const = default;
};

inline void PrintTo(const SeenKey& seen, std::ostream* out)
{
    *out << int(seen.key) << " with " << seen.modifiers;
}

inline bool isModifierKey(HardwareKey key)
{
    const auto code = codeAtPlace(key);
    return (code && *code >= 54 && *code <= 62) || key == 77;
}

// The presses that a client was sent until now, without modifier keys.
inline std::vector<SeenKey> pressesOf(test::XClient& client)
{
    client.sync();
    std::vector<SeenKey> seen;
    while (const auto event = client.nextOf(XCB_KEY_PRESS, std::chrono::milliseconds(0))) {
        const auto& press = reinterpret_cast<xcb_key_press_event_t&>(*event);
        if (!isModifierKey(press.detail))
            seen.push_back({press.detail, press.state & 0xffu});
    }
    return seen;
}

// The keys that are down, as the server tells a stranger.
inline std::vector<HardwareKey> keysDown(test::XClient& client)
{
    std::vector<HardwareKey> keys;
    const auto reply = owned(xcb_query_keymap_reply(
        client.connection(), xcb_query_keymap(client.connection()), nullptr));
    for (unsigned key = 0; reply && key < 256; ++key)
        if (reply->keys[key / 8] & (1 << key % 8))
            keys.push_back(HardwareKey(key));
    return keys;
}

// As if the user switched to another group of the layout.
inline void lockGroup(test::XClient& client, std::uint8_t group)
{
    owned(xcb_xkb_use_extension_reply(
        client.connection(), xcb_xkb_use_extension(client.connection(), 1, 0), nullptr));
    xcb_xkb_latch_lock_state(client.connection(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    client.sync();
}

// A screen in a window of another server, into which that server's keyboard types: what is held
// there is held by a device of ours, as by a hand.
class PhysicalKeyboard {
public:
    test::XServer outer;

    std::unique_ptr<test::XServer> makeInner()
    {
        auto inner = test::XServer::nestedIn(outer, {800, 600, {"-no-host-grab"}});
        const auto window = outer.run({"xdotool", "search", "--name", "Xephyr"}).output;
        outer.run({"xdotool", "windowfocus", "--sync", window.substr(0, window.find('\n'))});
        return inner;
    }

    // A key or a chord by xdotool's names, such as "ctrl+v".
    void down(const std::string& keys) { outer.run({"xdotool", "keydown", keys}); }
    void up(const std::string& keys) { outer.run({"xdotool", "keyup", keys}); }
    void press(const std::string& keys) { outer.run({"xdotool", "key", keys}); }
};

} // namespace tallowbay::x11
