#pragma once

#include "hotkeys/HotkeyConfig.h"

#include <optional>

namespace tallowbay {

// The combination of a key press while the user records a hotkey, from the characters that the key
// would type without modifiers (UTF-8). Empty if neither control, option nor command is held:
// recording goes on then.
std::optional<HotkeyConfig> recordedHotkey(
    const KeyPress&, const std::string& charactersIgnoringModifiers);

// How a key is called: by its own name, else by what it types, else by its code.
std::string hotkeyKeyName(KeyCode, const std::string& charactersIgnoringModifiers);

} // namespace tallowbay
