#pragma once

#include "platform/x11/keys/VirtualKeys.h"

#include <array>
#include <optional>
#include <vector>

#include <xkbcommon/xkbcommon.h>

namespace tallowbay::x11 {

// Which key of the keyboard has which virtual key code, in each group of a keymap.
//
// A letter's code belongs to every key that types the letter in the group. A letter that no key of
// the group types (Cyrillic, Greek ...) belongs to the keys that type it in another group, and if
// there is none to the key at its place on a US keyboard: that is how programs read their
// shortcuts. All other codes belong to their places; a place that has become a letter's gives its
// code to a key that has none.
//
// Immutable: may be shared between threads.
class KeyboardLayout {
public:
    // A keyboard of which nothing is known: every key has the code of its place.
    KeyboardLayout();
    explicit KeyboardLayout(xkb_keymap&);

    // Empty for a key that has no virtual key code. A group beyond the last wraps around.
    std::optional<KeyCode> code(HardwareKey, xkb_layout_index_t group) const;

    // The key to press for a code. Empty if none has it.
    std::optional<HardwareKey> key(KeyCode, xkb_layout_index_t group) const;

    // The modifiers (a mask of the core protocol's) that the key sets while it is held.
    std::uint8_t modifiers(HardwareKey, xkb_layout_index_t group) const;

    // The key that sets this modifier and no other. Empty if none does.
    std::optional<HardwareKey> modifierKey(std::uint8_t modifier, xkb_layout_index_t group) const;

private:
    struct Group {
        std::array<std::optional<KeyCode>, 256> codes; // by hardware key
        std::array<std::uint8_t, 256> modifiers{};
    };

    const Group& at(xkb_layout_index_t group) const { return groups[group % groups.size()]; }

    std::vector<Group> groups; // at least one
};

} // namespace tallowbay::x11
