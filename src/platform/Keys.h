#pragma once

#include <cstdint>

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

} // namespace tallowbay
