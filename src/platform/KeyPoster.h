#pragma once

#include "platform/Keys.h"

namespace tallowbay {

// Types for the user.
//
// Thread: main queue.
class KeyPoster {
public:
    virtual ~KeyPoster() = default;

    // The program that has the focus sees this key with exactly these modifiers, at once, whatever
    // the user holds at that moment. Keys that the user holds are never left stuck, and never
    // pressed again for them. Does nothing where the session lets no one type.
    virtual void post(KeyCode, KeyDirection, EventFlags) = 0;
};

} // namespace tallowbay
