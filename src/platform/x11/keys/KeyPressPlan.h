#pragma once

#include "platform/x11/keys/KeyboardLayout.h"

#include <optional>
#include <vector>

namespace tallowbay::x11 {

// The keyboard as it stands before we press a key. Modifiers are masks of the core protocol.
struct KeyboardMoment {
    std::uint8_t group = 0;
    std::uint8_t latchedOrLocked = 0; // modifiers that no key holds
    std::vector<HardwareKey> down;
};

// What has to be done, in this order, for a program to see a key with exactly the modifiers that
// are wanted. Caps Lock and Num Lock do not count: they change no shortcut.
struct KeyPressPlan {
    std::vector<HardwareKey> release;
    std::uint8_t undo = 0; // latched or locked modifiers
    std::vector<HardwareKey> press; // the key itself comes last
};

// Empty if no key has the code, or none sets a modifier that is wanted: then nothing must be
// pressed, since a shortcut without its modifier would type a letter.
std::optional<KeyPressPlan> planKeyPress(
    const KeyboardLayout&, const KeyboardMoment&, KeyCode, std::uint8_t wantedModifiers);

} // namespace tallowbay::x11
