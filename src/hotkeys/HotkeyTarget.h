#pragma once

#include "hotkeys/HotkeyConfig.h"

#include <array>
#include <optional>

namespace tallowbay {

// What a hotkey does, in the order of the rows of the settings.
enum class HotkeyTarget { openClose, ocr, undoLast, clearAll };

inline constexpr std::array hotkeyTargets{
    HotkeyTarget::openClose, HotkeyTarget::ocr, HotkeyTarget::undoLast, HotkeyTarget::clearAll};

// What belongs to a target for good.
struct HotkeyTraits {
    HotkeyId id; // 3 is never used
    std::string defaultsKey;
    HotkeyConfig defaultConfig;
    std::optional<HotkeyConfig> secondChoice; // where another program owns the default
};

const HotkeyTraits& traitsOf(HotkeyTarget);

} // namespace tallowbay
