#include "hotkeys/HotkeyTarget.h"

#include "base/PreferenceKeys.h"

namespace tallowbay {

namespace {

// Four letters as one number, the first in the highest byte.
constexpr std::uint32_t fourCharCode(const char (&letters)[5])
{
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(letters[i]);
    return code;
}

constexpr auto command = hotkeyModifier::command;

} // namespace

const HotkeyTraits& traitsOf(HotkeyTarget target)
{
    // In the order of the targets.
    static const std::array<HotkeyTraits, hotkeyTargets.size()> table{{
        {{fourCharCode("SSAN"), 2},
         preference::hotkeyOpenClose,
         {keyCode::space, hotkeyModifier::option, "Opt+Space"},
         // On many desktops the default opens the menu of a window.
         HotkeyConfig{keyCode::space, command | hotkeyModifier::option, "Cmd+Opt+Space"}},
        {{fourCharCode("SSOX"), 1},
         preference::hotkeyOCR,
         {keyCode::x, command | hotkeyModifier::shift, "Cmd+Shift+X"},
         std::nullopt},
        {{fourCharCode("SSUL"), 4},
         preference::hotkeyUndoLast,
         {keyCode::z, command | hotkeyModifier::control, "Cmd+Ctrl+Z"},
         std::nullopt},
        {{fourCharCode("SSCL"), 5},
         preference::hotkeyClearAll,
         {keyCode::c, command | hotkeyModifier::control, "Cmd+Ctrl+C"},
         std::nullopt},
    }};
    return table.at(static_cast<std::size_t>(target));
}

} // namespace tallowbay
