#include "platform/x11/keys/X11KeyPoster.h"

#include "platform/x11/XcbXkb.h"
#include "platform/x11/keys/KeyPressPlan.h"
#include "platform/x11/keys/KeyRoles.h"

namespace tallowbay::x11 {

namespace {

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

// Empty if the server does not answer.
std::optional<KeyboardMoment> momentOf(xcb_connection_t* connection)
{
    const auto state = owned(xcb_xkb_get_state_reply(
        connection, xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!state)
        return std::nullopt;
    return KeyboardMoment{
        state->group, std::uint8_t(state->latchedMods | state->lockedMods), heldKeys(connection)};
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

void X11KeyPoster::press(KeyCode code, std::uint8_t wantedModifiers)
{
    release(code);
    const auto now = momentOf(session.connection());
    const auto plan =
        now ? planKeyPress(*keyboard.layout(), *now, code, wantedModifiers) : std::nullopt;
    if (!plan)
        return;
    for (const HardwareKey key : plan->release)
        keyboard.type(key, KeyDirection::up);
    if (plan->undo)
        undoLatchesAndLocks(session.connection(), plan->undo);
    for (const HardwareKey key : plan->press)
        keyboard.type(key, KeyDirection::down);
    down[code] = plan->press;
    xcb_flush(session.connection());
}

void X11KeyPoster::release(KeyCode code)
{
    const auto pressed = down.extract(code);
    if (pressed.empty())
        return;
    const std::vector<HardwareKey>& keys = pressed.mapped();
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        keyboard.type(*key, KeyDirection::up);
    xcb_flush(session.connection());
}

} // namespace tallowbay::x11
