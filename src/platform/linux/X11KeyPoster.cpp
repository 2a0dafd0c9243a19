#include "platform/linux/X11KeyPoster.h"

#include "platform/linux/KeyRoles.h"
#include "platform/linux/XcbXkb.h"

#include <algorithm>
#include <ranges>

namespace tallowbay::linux_desktop {

namespace {

constexpr HardwareKey numLockKey = 77;

std::vector<HardwareKey> heldKeys(xcb_connection_t* connection)
{
    std::vector<HardwareKey> keys;
    const auto reply =
        owned(xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    for (unsigned key = 8; reply && key < 256; ++key)
        if (reply->keys[key / 8] & (1 << key % 8))
            keys.push_back(HardwareKey(key));
    return keys;
}

// Latches are undone altogether, where they are in the mask.
void undoLatchesAndLocks(xcb_connection_t* connection, std::uint8_t modifiers)
{
    xcb_xkb_latch_lock_state(
        connection, XCB_XKB_ID_USE_CORE_KBD, modifiers, 0, 0, 0, modifiers, 0, 0);
}

} // namespace

X11KeyPoster::X11KeyPoster(X11Session& session, X11Keyboard& keyboard)
    : session(session)
    , keyboard(keyboard)
{
}

X11KeyPoster::~X11KeyPoster()
{
    while (!down.empty())
        release(down.begin()->first);
}

void X11KeyPoster::post(KeyCode code, KeyDirection direction, EventFlags flags)
{
    if (!session.typesKeys())
        return;
    if (direction == KeyDirection::down)
        press(code, modifiersOf(flags));
    else
        release(code);
}

void X11KeyPoster::press(KeyCode code, std::uint8_t wanted)
{
    release(code);
    xcb_connection_t* connection = session.connection();
    const auto state = owned(xcb_xkb_get_state_reply(
        connection, xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    const auto layout = keyboard.layout();
    const auto key = state ? layout->key(code, state->group) : std::nullopt;
    if (!key)
        return;
    const auto harmless =
        std::uint8_t(XCB_MOD_MASK_LOCK | layout->modifiers(numLockKey, state->group));
    const auto unwanted = std::uint8_t(~(wanted | harmless));

    auto present = std::uint8_t((state->latchedMods | state->lockedMods) & wanted);
    for (const HardwareKey held : heldKeys(connection)) {
        const std::uint8_t modifiers = layout->modifiers(held, state->group);
        // A key that is down already would not be seen to go down.
        if ((modifiers & unwanted) || held == *key)
            keyboard.type(held, KeyDirection::up);
        else
            present |= modifiers;
    }
    if ((state->latchedMods | state->lockedMods) & unwanted)
        undoLatchesAndLocks(connection, unwanted);

    std::vector<HardwareKey> pressed;
    for (const KeyRole& role : keyRoles)
        if (wanted & ~present & role.modifier)
            if (const auto modifier = layout->modifierKey(role.modifier, state->group))
                pressed.push_back(*modifier);
    pressed.push_back(*key);
    for (const HardwareKey each : pressed)
        keyboard.type(each, KeyDirection::down);
    down[code] = std::move(pressed);
    xcb_flush(connection);
}

void X11KeyPoster::release(KeyCode code)
{
    const auto pressed = down.extract(code);
    if (pressed.empty())
        return;
    for (const HardwareKey key : std::views::reverse(pressed.mapped()))
        keyboard.type(key, KeyDirection::up);
    xcb_flush(session.connection());
}

} // namespace tallowbay::linux_desktop
