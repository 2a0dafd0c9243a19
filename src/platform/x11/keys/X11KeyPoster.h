#pragma once

#include "platform/KeyPoster.h"
#include "platform/x11/keys/X11Keyboard.h"

#include <map>
#include <vector>

namespace tallowbay::x11 {

// Types on an X11 session by XTEST.
//
// The focused program sees what the keyboard as a whole is in: what the user holds is added to what
// we press. So before a key goes down, held modifiers that it is not to have are released for the
// user, who has to press them anew, and latched or locked ones are undone; Caps Lock and Num Lock,
// which change no shortcut, stay. A wanted modifier that is held already is left to the user.
class X11KeyPoster : public KeyPoster {
public:
    X11KeyPoster(X11Session&, X11Keyboard&);

    // What is still down goes up.
    ~X11KeyPoster() override;

    void post(KeyCode, KeyDirection, EventFlags) override;

private:
    void press(KeyCode, std::uint8_t wantedModifiers);
    void release(KeyCode);

    X11Session& session;
    X11Keyboard& keyboard;
    std::map<KeyCode, std::vector<HardwareKey>> down; // all that was pressed for it, in order
};

} // namespace tallowbay::x11
