#pragma once

#include "platform/KeyTap.h"
#include "platform/x11/keys/X11Keyboard.h"

namespace tallowbay::x11 {

// The key presses of an X11 session, also while a program has grabbed the keyboard.
//
// Besides Ctrl+V, which is Command+V here, two more presses are pastes: Ctrl+Shift+V in terminals
// comes as Command+Shift+V by itself, and Shift+Insert, which has no Command in it, is reported as
// that, too, since those who listen know a paste by its V.
class X11KeyTap : public KeyTap {
public:
    X11KeyTap(X11Session&, X11Keyboard&);

    std::optional<Subscription> start(Handler) override;
    Subscription watchClicks(std::function<void()>) override;

private:
    // Ends its watch, and asks the server for no more keys.
    class Run;

    // The server keeps one list of events for both.
    void select(std::uint32_t events, bool wanted);

    X11Session& session;
    X11Keyboard& keyboard;
    std::uint32_t selected = 0;
};

} // namespace tallowbay::x11
