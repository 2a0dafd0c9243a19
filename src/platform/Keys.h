#pragma once

#include "platform/Subscription.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace tallowbay {

// Virtual key codes: the key's place on an ANSI keyboard, by the letter that stands there in the
// user's layout (V = 9 is the key that types a "v").
using KeyCode = std::uint32_t;

// The modifiers of a key event, as a mask of event flags.
using EventFlags = std::uint64_t;

namespace eventFlag {
inline constexpr EventFlags shift = 1 << 17;
inline constexpr EventFlags control = 1 << 18;
inline constexpr EventFlags option = 1 << 19;
inline constexpr EventFlags command = 1 << 20;
} // namespace eventFlag

// Roles, not keys: on Linux Command is the Ctrl key, Option is Alt and Control is Super.

struct KeyPress {
    KeyCode keyCode = 0;
    EventFlags flags = 0;
    bool operator==(const KeyPress&) const = default;
};

enum class KeyDirection { down, up };

// Listens to every key press of the user's session without taking any away.
//
// Keys without a virtual key code are not reported. A paste that needs no V (Shift+Insert) is
// reported as V with Command and Shift.
class KeyTap {
public:
    // Called on the tap's own thread, in the order of the presses. What our own KeyPoster posted is
    // never reported; a key that repeats while it is held is reported once.
    using Handler = std::function<void(const KeyPress&)>;
    virtual ~KeyTap() = default;

    // Listens until the token ends. Empty if the session lets no one listen. Main queue only; one
    // tap at a time.
    virtual std::optional<Subscription> start(Handler) = 0;
};

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
