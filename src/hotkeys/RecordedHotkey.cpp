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
    {49, "Space"}, {36, "Return"}, {48, "Tab"},   {51, "Delete"}, {117, "Fwd Del"},
    {123, "Left"}, {124, "Right"}, {126, "Up"},   {125, "Down"},  {115, "Home"},
    {119, "End"},  {116, "PgUp"},  {121, "PgDn"}, {122, "F1"},    {120, "F2"},
    {99, "F3"},    {118, "F4"},    {96, "F5"},    {97, "F6"},     {98, "F7"},
    {100, "F8"},   {101, "F9"},    {109, "F10"},  {103, "F11"},   {111, "F12"},
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
