#pragma once

#include "platform/x11/X11Session.h"
#include "platform/x11/keys/KeyboardLayout.h"

#include <deque>
#include <mutex>

#include <xcb/xinput.h>

namespace tallowbay::x11 {

// The session's keyboard: its layout, its modifiers, and which of its presses are ours.
//
// Thread: any, unless a member says otherwise. The session outlives it.
class X11Keyboard {
public:
    struct State {
        std::uint8_t modifiers = 0; // held, latched and locked ones, as a mask of the core protocol
        std::uint8_t group = 0;
    };

    explicit X11Keyboard(X11Session&);

    // Up to date for a watcher of the session's thread that was registered later than this object.
    // Asking the server instead would give the state of now, not that of the event.
    State state() const;

    // Follows the user's changes of the layout.
    std::shared_ptr<const KeyboardLayout> layout();

    // Presses or releases a key for the user, at once, as another keyboard would. Flushing is left
    // to the caller.
    void type(HardwareKey, KeyDirection);

    // Whether this press is one that type() made, each of which is told once. For a watcher of the
    // session's thread that was registered later than this object, with every raw press.
    //
    // It is exact. The server makes the raw event while it handles our request, so the event
    // carries the number of that request. No earlier event can carry it, and what carries it, too,
    // and comes from others (until our next request is handled) comes after ours; so ours is the
    // first press with that number. A press that the server did not report leaves nothing behind:
    // any event with a later number drops it.
    bool isOwnPress(const X11Event&);

private:
    struct OwnPress {
        std::uint32_t request;
        HardwareKey key;
    };

    void select();
    void see(const X11Event&);
    void seeKeyboardEvent(const X11Event&);
    void changeState(State);
    void forgetOwnPressesBefore(std::uint32_t request);
    void forgetLayout();
    std::shared_ptr<const KeyboardLayout> readLayout() const;

    X11Session& session;

    mutable std::mutex stateMutex;
    std::optional<State> currentState;

    std::mutex layoutMutex;
    std::shared_ptr<const KeyboardLayout> currentLayout; // null once it has changed

    std::mutex ownMutex;
    std::deque<OwnPress> ownPresses;

    Subscription events;
};

} // namespace tallowbay::x11
