#include "platform/x11/keys/X11Keyboard.h"

#include "platform/x11/XcbXkb.h"
#include "platform/x11/keys/X11Keymap.h"

#include <xcb/xtest.h>

namespace tallowbay::x11 {

X11Keyboard::X11Keyboard(X11Session& session)
    : session(session)
    , events(session.watchOnThread([this](const X11Event& event) { see(event); }))
{
    select();
    const auto reply = owned(xcb_xkb_get_state_reply(
        session.connection(), xcb_xkb_get_state(session.connection(), XCB_XKB_ID_USE_CORE_KBD),
        nullptr));
    const std::scoped_lock lock(stateMutex);
    // Whatever has been reported since the selection ends up in the state of now.
    if (reply && !currentState)
        currentState = State{reply->mods, reply->group};
}

void X11Keyboard::select()
{
    constexpr std::uint16_t which = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY
        | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS
        | XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_KEY_ACTIONS
        | XCB_XKB_MAP_PART_VIRTUAL_MODS | XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = details.newKeyboardDetails =
        XCB_XKB_NKN_DETAIL_KEYCODES | XCB_XKB_NKN_DETAIL_GEOMETRY | XCB_XKB_NKN_DETAIL_DEVICE_ID;
    details.affectState = details.stateDetails =
        XCB_XKB_STATE_PART_MODIFIER_STATE | XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(
        session.connection(), XCB_XKB_ID_USE_CORE_KBD, which, 0, 0, mapParts, mapParts, &details);
}

X11Keyboard::State X11Keyboard::state() const
{
    const std::scoped_lock lock(stateMutex);
    return currentState.value_or(State{});
}

// Read anew only when it is needed: one change by the user is reported some twenty times.
std::shared_ptr<const KeyboardLayout> X11Keyboard::layout()
{
    const std::scoped_lock lock(layoutMutex);
    if (!currentLayout)
        currentLayout = readLayout();
    return currentLayout;
}

std::shared_ptr<const KeyboardLayout> X11Keyboard::readLayout() const
{
    const Keymap keymap = readKeymap(session.connection());
    return keymap ? std::make_shared<const KeyboardLayout>(*keymap)
                  : std::make_shared<const KeyboardLayout>();
}

void X11Keyboard::type(HardwareKey key, KeyDirection direction)
{
    const bool down = direction == KeyDirection::down;
    // Held until the press is noted, so that its event cannot be looked at before.
    const std::scoped_lock lock(ownMutex);
    const auto request = xcb_test_fake_input(
        session.connection(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, XCB_CURRENT_TIME,
        XCB_NONE, 0, 0, 0);
    if (down)
        ownPresses.push_back({request.sequence, key});
}

bool X11Keyboard::isOwnPress(const X11Event& event)
{
    const std::scoped_lock lock(ownMutex);
    if (ownPresses.empty() || ownPresses.front().request != event.sequence()
        || ownPresses.front().key != event.as<xcb_input_raw_key_press_event_t>().detail)
        return false;
    ownPresses.pop_front();
    return true;
}

void X11Keyboard::forgetOwnPressesBefore(std::uint32_t request)
{
    const std::scoped_lock lock(ownMutex);
    while (!ownPresses.empty() && isBefore(ownPresses.front().request, request))
        ownPresses.pop_front();
}

void X11Keyboard::see(const X11Event& event)
{
    forgetOwnPressesBefore(event.sequence());
    if (event.type() == XCB_MAPPING_NOTIFY)
        forgetLayout();
    else if (event.type() == session.keyboardEvent())
        seeKeyboardEvent(event);
}

// All events of the extension share one type; the next byte tells which it is.
void X11Keyboard::seeKeyboardEvent(const X11Event& event)
{
    const auto& change = event.as<xcb_xkb_state_notify_event_t>();
    if (change.xkbType == XCB_XKB_STATE_NOTIFY)
        changeState({change.mods, change.group});
    else
        forgetLayout();
}

void X11Keyboard::changeState(State state)
{
    const std::scoped_lock lock(stateMutex);
    currentState = state;
}

void X11Keyboard::forgetLayout()
{
    const std::scoped_lock lock(layoutMutex);
    currentLayout.reset();
}

} // namespace tallowbay::x11
