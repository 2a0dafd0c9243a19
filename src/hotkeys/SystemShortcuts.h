#pragma once

#include "platform/Hotkeys.h"

#include <cstddef>

namespace tallowbay {

// How many combinations belong to the system or to nearly every program.
inline constexpr std::size_t systemShortcutCount = 42;

// Whether a combination is one of them, by exactly its key and modifiers.
bool conflictsWithSystemShortcut(KeyCode, HotkeyModifiers);

} // namespace tallowbay
