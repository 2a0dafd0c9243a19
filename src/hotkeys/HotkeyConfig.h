#pragma once

#include "platform/Hotkeys.h"

#include <optional>
#include <string>

namespace tallowbay {

class UserDefaults;

// A combination of keys, as the user chose it.
struct HotkeyConfig {
    KeyCode keyCode = 0;
    HotkeyModifiers modifiers = 0;
    std::string displayString; // the parts joined by "+"

    bool operator==(const HotkeyConfig&) const = default;

    // Stores a dictionary of the three fields.
    void save(UserDefaults&, const std::string& key) const;

    // What is stored; the fallback, unchanged, unless every field is there with its type.
    static HotkeyConfig load(
        const UserDefaults&, const std::string& key, const HotkeyConfig& fallback);

    // The same without a fallback.
    static std::optional<HotkeyConfig> stored(const UserDefaults&, const std::string& key);

    bool hasKeysOf(const HotkeyConfig& other) const
    {
        return keyCode == other.keyCode && modifiers == other.modifiers;
    }
};

} // namespace tallowbay
