#include "platform/x11/keys/X11Hotkeys.h"

#include "platform/x11/XcbXkb.h"
#include "platform/x11/keys/X11Keymap.h"

#include <algorithm>
#include <utility>

namespace tallowbay::x11 {

namespace {

using namespace std::chrono_literals;

// Switching the layout makes dozens of events within a few milliseconds.
constexpr auto settleTime = 50ms;

// A window manager that takes the place of another gets its keys first, as at the start of a
// session.
constexpr auto successionTime = 1s;

constexpr auto coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

xkb_layout_index_t activeGroup(xcb_connection_t* server)
{
    const auto state =
        owned(xcb_xkb_get_state_reply(server, xcb_xkb_get_state(server, coreKeyboard), nullptr));
    return state ? state->group : 0;
}

} // namespace

X11Hotkeys::X11Hotkeys(X11Session& session, Dispatch& dispatch)
    : session(session)
    , dispatch(dispatch)
    , grabs(session.connection(), session.root())
{
    watchingThread = session.watchOnThread([this](const X11Event& event) { showOnThread(event); });
    watchingMain = session.watchOnMain([this](const X11Event& event) { handle(event); });
    followKeyboard();
    readKeyboard();
}

X11Hotkeys::~X11Hotkeys() = default;

void X11Hotkeys::followKeyboard()
{
    auto* server = session.connection();
    // A key that repeats is pressed again and again, and released once.
    const auto repeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    xcb_discard_reply(
        server, xcb_xkb_per_client_flags(server, coreKeyboard, repeat, repeat, 0, 0, 0).sequence);

    const auto maps = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    const auto mapParts = 0xFF;
    xcb_xkb_select_events_details_t details{};
    details.affectState = details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(
        server, coreKeyboard, maps | XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, maps, mapParts, mapParts,
        &details);
    xcb_flush(server);
}

Subscription X11Hotkeys::install(Handler installed)
{
    handler = std::make_shared<Handler>(std::move(installed));
    return Subscription(lifetime.guard([this, mine = std::weak_ptr(handler)] {
        if (handler == mine.lock())
            handler.reset();
    }));
}

std::optional<Subscription> X11Hotkeys::registerHotkey(
    KeyCode code, HotkeyModifiers hotkeyModifiers, HotkeyId id)
{
    if (xcb_connection_has_error(session.connection()) != 0)
        return std::nullopt;
    const int token = ++lastToken;
    const Registration registration{code, hotkeyModifiers, id};
    registrations.emplace(token, registration);
    holdKeys();
    if (!isHeld(registration)) {
        registrations.erase(token);
        followManager();
        return std::nullopt;
    }
    return Subscription(lifetime.guard([this, token] {
        registrations.erase(token);
        holdKeys();
    }));
}

bool X11Hotkeys::reaches(HotkeyId id) const
{
    return std::ranges::any_of(registrations, [&](const auto& entry) {
        return entry.second.id == id && isHeld(entry.second);
    });
}

Subscription X11Hotkeys::watchForFreed(std::function<void()> told)
{
    freedHandler = std::make_shared<std::function<void()>>(std::move(told));
    return Subscription(lifetime.guard([this, mine = std::weak_ptr(freedHandler)] {
        if (freedHandler == mine.lock())
            freedHandler.reset();
    }));
}

// The property may outlive the window, which then cannot be followed. On return its end is no
// longer missed.
void X11Hotkeys::followManager()
{
    auto* server = session.connection();
    const auto reply = owned(xcb_get_property_reply(
        server,
        xcb_get_property(
            server, 0, session.root(), session.atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 0,
            1),
        nullptr));
    if (!reply || reply->format != 32 || reply->value_len != 1)
        return;
    managersWindow = *static_cast<xcb_window_t*>(xcb_get_property_value(reply.get()));
    const std::uint32_t end = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    owned(xcb_request_check(
        server,
        xcb_change_window_attributes_checked(server, managersWindow, XCB_CW_EVENT_MASK, &end)));
}

// A window manager takes its keys anew when the keyboard changes, and a new one takes them when the
// old one has gone: those come first.
void X11Hotkeys::tellFreedSoon()
{
    if (std::exchange(tellingSoon, true))
        return;
    dispatch.mainAfter(successionTime, lifetime.guard([this] {
        tellingSoon = false;
        holdKeys();
        if (const auto told = freedHandler)
            (*told)();
    }));
}

std::set<X11KeyGrabs::Key> X11Hotkeys::keysOf(const Registration& registration) const
{
    std::set<X11KeyGrabs::Key> keys;
    if (!layout)
        return keys;
    for (int key = 8; key <= 255; ++key) {
        const auto hardware = static_cast<HardwareKey>(key);
        if (layout->code(hardware, group) == registration.code)
            keys.emplace(hardware, modifiers.maskOf(registration.modifiers));
    }
    return keys;
}

bool X11Hotkeys::isHeld(const Registration& registration) const
{
    const auto keys = keysOf(registration);
    return std::ranges::any_of(keys, [this](auto key) { return grabs.holds(key); });
}

void X11Hotkeys::holdKeys()
{
    std::set<X11KeyGrabs::Key> wanted;
    for (const auto& [token, registration] : registrations)
        wanted.merge(keysOf(registration));
    grabs.hold(wanted);
}

// Keyboard.

void X11Hotkeys::showOnThread(const X11Event& event)
{
    const bool ofKeyboard = event.type() == session.keyboardEvent();
    if (!ofKeyboard && event.type() != XCB_MAPPING_NOTIFY)
        return;
    const auto& state = event.as<xcb_xkb_state_notify_event_t>();
    if (ofKeyboard && state.xkbType == XCB_XKB_STATE_NOTIFY) {
        if ((state.changed & XCB_XKB_STATE_PART_GROUP_STATE) != 0)
            dispatch.mainAsync(lifetime.guard([this, now = state.group] { setGroup(now); }));
        return;
    }
    if (!readingSoon->exchange(true)) {
        dispatch.mainAfter(settleTime, lifetime.guard([this] {
            readingSoon->store(false);
            readKeyboard();
            tellFreedSoon();
        }));
    }
}

void X11Hotkeys::readKeyboard()
{
    auto* server = session.connection();
    const Keymap keymap = readKeymap(server);
    if (!keymap)
        return;
    layout = std::make_unique<KeyboardLayout>(*keymap);
    modifiers = X11Modifiers(server, *keymap);
    group = activeGroup(server);
    grabs.setLockVariants(modifiers.lockVariants());
    holdKeys();
}

void X11Hotkeys::setGroup(xkb_layout_index_t now)
{
    if (now == group)
        return;
    group = now;
    holdKeys();
    tellFreedSoon();
}

// Presses.

void X11Hotkeys::handle(const X11Event& event)
{
    if (event.type() == XCB_DESTROY_NOTIFY
        && event.as<xcb_destroy_notify_event_t>().window == managersWindow) {
        managersWindow = XCB_NONE;
        tellFreedSoon();
    }
    if (event.type() != XCB_KEY_PRESS && event.type() != XCB_KEY_RELEASE)
        return;
    const auto& key = event.as<xcb_key_press_event_t>(); // a release is of the same form
    if (key.event != session.root())
        return;
    if (event.type() == XCB_KEY_PRESS)
        press(key.detail, key.state);
    else
        release(key.detail);
}

void X11Hotkeys::press(HardwareKey key, std::uint16_t state)
{
    grabbingKey = grabbingKey.value_or(key);
    if (!heldKeys.insert(key).second)
        return;
    const Registration* registration = newest(key, state);
    const auto installed = handler;
    if (registration && installed)
        (*installed)(registration->id);
}

// What is still held when the server has let go of the keyboard will be released elsewhere.
void X11Hotkeys::release(HardwareKey key)
{
    heldKeys.erase(key);
    if (grabbingKey != key)
        return;
    grabbingKey.reset();
    heldKeys.clear();
}

// The state of a grabbed key does not tell the group.
const X11Hotkeys::Registration* X11Hotkeys::newest(HardwareKey key, std::uint16_t state) const
{
    const auto code = layout ? layout->code(key, group) : std::nullopt;
    const auto found =
        std::find_if(registrations.rbegin(), registrations.rend(), [&](const auto& entry) {
            return entry.second.code == code
                && modifiers.maskOf(entry.second.modifiers) == modifiers.withoutLocks(state);
        });
    return found == registrations.rend() ? nullptr : &found->second;
}

} // namespace tallowbay::x11
