#include "hotkeys/RecordedHotkey.h"

#include "hotkeys/UpperCase.h"

#include <algorithm>
#include <array>

namespace tallowbay {

namespace {

struct NamedKey {
    KeyCode keyCode;
    const char* name;
};

constexpr std::array<NamedKey, 25> namedKeys{{
    {keyCode::space, "Space"},
    {keyCode::returnKey, "Return"},
    {keyCode::tab, "Tab"},
    {keyCode::backspace, "Delete"},
    {keyCode::forwardDelete, "Fwd Del"},
    {keyCode::left, "Left"},
    {keyCode::right, "Right"},
    {keyCode::up, "Up"},
    {keyCode::down, "Down"},
    {keyCode::home, "Home"},
    {keyCode::end, "End"},
    {keyCode::pageUp, "PgUp"},
    {keyCode::pageDown, "PgDn"},
    {keyCode::f1, "F1"},
    {keyCode::f2, "F2"},
    {keyCode::f3, "F3"},
    {keyCode::f4, "F4"},
    {keyCode::f5, "F5"},
    {keyCode::f6, "F6"},
    {keyCode::f7, "F7"},
    {keyCode::f8, "F8"},
    {keyCode::f9, "F9"},
    {keyCode::f10, "F10"},
    {keyCode::f11, "F11"},
    {keyCode::f12, "F12"},
}};

struct Modifier {
    EventFlags flag;
    HotkeyModifiers mask;
    const char* name;
};

// In the order in which they are named.
constexpr std::array<Modifier, 4> modifierTable{{
    {eventFlag::control, hotkeyModifier::control, "Ctrl"},
    {eventFlag::option, hotkeyModifier::option, "Opt"},
    {eventFlag::command, hotkeyModifier::command, "Cmd"},
    {eventFlag::shift, hotkeyModifier::shift, "Shift"},
}};

bool isPrintable(const std::string& characters)
{
    const auto isControl = [](unsigned char c) { return c < 0x20; };
    return !characters.empty() && std::ranges::none_of(characters, isControl);
}

} // namespace

std::string hotkeyKeyName(KeyCode keyCode, const std::string& charactersIgnoringModifiers)
{
    const auto named = std::ranges::find(namedKeys, keyCode, &NamedKey::keyCode);
    if (named != namedKeys.end())
        return named->name;
    if (isPrintable(charactersIgnoringModifiers))
        return upperCase(charactersIgnoringModifiers);
    return "Key" + std::to_string(keyCode);
}

std::optional<HotkeyConfig> recordedHotkey(
    const KeyPress& press, const std::string& charactersIgnoringModifiers)
{
    if ((press.flags & (eventFlag::control | eventFlag::option | eventFlag::command)) == 0)
        return std::nullopt;
    HotkeyConfig config{press.keyCode, 0, {}};
    for (const Modifier& modifier : modifierTable) {
        if ((press.flags & modifier.flag) == 0)
            continue;
        config.modifiers |= modifier.mask;
        config.displayString += std::string(modifier.name) + "+";
    }
    config.displayString += hotkeyKeyName(press.keyCode, charactersIgnoringModifiers);
    return config;
}

} // namespace tallowbay
