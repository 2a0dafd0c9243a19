#include "platform/x11/keys/X11KeyTap.h"

#include "platform/x11/keys/KeyRoles.h"

#include <map>
#include <utility>

namespace tallowbay::x11 {

namespace {

// Between two presses of a key that is held. A key whose release got lost counts as held no longer.
constexpr std::uint32_t longestRepeatMilliseconds = 2000;

constexpr std::uint32_t keyEvents =
    XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;

bool isClick(X11Session& session, const X11Event& event)
{
    constexpr std::uint32_t firstOfWheel = 4;
    constexpr std::uint32_t lastOfWheel = 7;
    if (event.type() != XCB_GE_GENERIC)
        return false;
    const auto& raw = event.as<xcb_input_raw_button_press_event_t>();
    return raw.extension == session.inputExtension() && raw.event_type == XCB_INPUT_RAW_BUTTON_PRESS
        && (raw.detail < firstOfWheel || raw.detail > lastOfWheel);
}

KeyPress asPaste(const KeyPress& press)
{
    if (press.keyCode == keyCode::insert && press.flags == eventFlag::shift)
        return {keyCode::v, eventFlag::command | eventFlag::shift};
    return press;
}

} // namespace

class X11KeyTap::Run {
public:
    Run(X11KeyTap& tap, Handler handler)
        : tap(tap)
        , session(tap.session)
        , keyboard(tap.keyboard)
        , handler(std::move(handler))
        , events(session.watchOnThread([this](const X11Event& event) { see(event); }))
    {
        tap.select(keyEvents, true);
    }
    ~Run() { tap.select(keyEvents, false); }

private:
    using DeviceKey = std::pair<std::uint16_t, std::uint32_t>;

    void see(const X11Event& event)
    {
        if (event.type() != XCB_GE_GENERIC)
            return;
        const auto& raw = event.as<xcb_input_raw_key_press_event_t>();
        if (raw.extension != session.inputExtension())
            return;
        if (raw.event_type == XCB_INPUT_RAW_KEY_RELEASE)
            held.erase({raw.sourceid, raw.detail});
        else if (
            raw.event_type == XCB_INPUT_RAW_KEY_PRESS && !keyboard.isOwnPress(event)
            && !repeats(raw))
            report(raw);
    }

    bool repeats(const xcb_input_raw_key_press_event_t& raw)
    {
        const auto [last, isNew] = held.try_emplace({raw.sourceid, raw.detail}, raw.time);
        return !isNew
            && raw.time - std::exchange(last->second, raw.time) < longestRepeatMilliseconds;
    }

    // A key without a code, such as one of a media player, is of no interest.
    void report(const xcb_input_raw_key_press_event_t& raw)
    {
        const X11Keyboard::State state = keyboard.state();
        const auto code = keyboard.layout()->code(HardwareKey(raw.detail), state.group);
        if (code)
            handler(asPaste({*code, flagsOf(state.modifiers)}));
    }

    X11KeyTap& tap;
    X11Session& session;
    X11Keyboard& keyboard;
    Handler handler;
    std::map<DeviceKey, xcb_timestamp_t> held; // with the time of the last press
    Subscription events; // last: ends first
};

X11KeyTap::X11KeyTap(X11Session& session, X11Keyboard& keyboard)
    : session(session)
    , keyboard(keyboard)
{
}

std::optional<Subscription> X11KeyTap::start(Handler handler)
{
    if (!session.seesKeys())
        return std::nullopt;
    auto run = std::make_shared<Run>(*this, std::move(handler));
    return Subscription([run = std::move(run)]() mutable { run.reset(); });
}

Subscription X11KeyTap::watchClicks(std::function<void()> clicked)
{
    if (!session.seesKeys())
        return {};
    auto watch = std::make_shared<Subscription>(
        session.watchOnThread([this, clicked = std::move(clicked)](const X11Event& event) {
            if (isClick(session, event))
                clicked();
        }));
    select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS, true);
    return Subscription([this, watch = std::move(watch)]() mutable {
        watch.reset();
        select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS, false);
    });
}

// When it returns, the server tells of everything that was asked for.
void X11KeyTap::select(std::uint32_t events, bool wanted)
{
    selected = wanted ? selected | events : selected & ~events;
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, selected};
    xcb_input_xi_select_events(session.connection(), session.root(), 1, &selection.head);
    owned(xcb_get_input_focus_reply(
        session.connection(), xcb_get_input_focus(session.connection()), nullptr));
}

} // namespace tallowbay::x11
