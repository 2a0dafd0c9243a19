#include "platform/x11/keys/X11KeyTap.h"

#include "platform/x11/keys/KeyRoles.h"

#include <map>
#include <utility>

namespace tallowbay::x11 {

namespace {

// Between two presses of a key that is held. A key whose release got lost counts as held no longer.
constexpr std::uint32_t longestRepeatMilliseconds = 2000;

KeyPress asPaste(const KeyPress& press)
{
    if (press.keyCode == keyCode::insert && press.flags == eventFlag::shift)
        return {keyCode::v, eventFlag::command | eventFlag::shift};
    return press;
}

} // namespace

class X11KeyTap::Run {
public:
    Run(X11Session& session, X11Keyboard& keyboard, Handler handler)
        : session(session)
        , keyboard(keyboard)
        , handler(std::move(handler))
        , events(session.watchOnThread([this](const X11Event& event) { see(event); }))
    {
        select(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
        // From the return of start() on no press is missed.
        owned(xcb_get_input_focus_reply(
            session.connection(), xcb_get_input_focus(session.connection()), nullptr));
    }
    ~Run() { select(0); }

private:
    using DeviceKey = std::pair<std::uint16_t, std::uint32_t>;

    void select(std::uint32_t events) const
    {
        const struct {
            xcb_input_event_mask_t head;
            std::uint32_t mask;
        } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, events};
        xcb_input_xi_select_events(session.connection(), session.root(), 1, &selection.head);
        xcb_flush(session.connection());
    }

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
    auto run = std::make_shared<Run>(session, keyboard, std::move(handler));
    return Subscription([run = std::move(run)]() mutable { run.reset(); });
}

} // namespace tallowbay::x11
