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

private:
    // Ends its watch, and asks the server for no more keys.
    class Run;

    X11Session& session;
    X11Keyboard& keyboard;
};

} // namespace tallowbay::x11
