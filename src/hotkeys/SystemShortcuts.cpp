#include "hotkeys/SystemShortcuts.h"

#include <algorithm>
#include <array>

namespace tallowbay {

namespace {

struct Shortcut {
    KeyCode keyCode;
    HotkeyModifiers modifiers;
    bool operator==(const Shortcut&) const = default;
};

constexpr auto cmd = hotkeyModifier::command;
constexpr auto shift = hotkeyModifier::shift;
constexpr auto opt = hotkeyModifier::option;
constexpr auto ctrl = hotkeyModifier::control;

namespace key = keyCode;

constexpr std::array<Shortcut, systemShortcutCount> shortcuts{{
    {key::space, cmd},
    {key::tab, cmd},
    {key::tab, cmd | shift},
    {key::digit3, cmd | shift},
    {key::digit4, cmd | shift},
    {key::digit5, cmd | shift},
    {key::digit6, cmd | shift},
    {key::escape, opt | cmd},
    {key::d, opt | cmd},
    {key::space, opt | cmd},
    {key::space, ctrl},
    {key::space, ctrl | shift},
    {key::a, cmd},
    {key::b, cmd},
    {key::c, cmd},
    {key::d, cmd},
    {key::e, cmd},
    {key::f, cmd},
    {key::g, cmd},
    {key::g, cmd | shift},
    {key::h, cmd},
    {key::i, cmd},
    {key::j, cmd},
    {key::k, cmd},
    {key::l, cmd},
    {key::m, cmd},
    {key::n, cmd},
    {key::o, cmd},
    {key::p, cmd},
    {key::q, cmd},
    {key::r, cmd},
    {key::s, cmd},
    {key::t, cmd},
    {key::u, cmd},
    {key::v, cmd},
    {key::w, cmd},
    {key::x, cmd},
    {key::y, cmd},
    {key::z, cmd},
    {key::z, cmd | shift},
    {key::backspace, cmd},
    {key::comma, cmd},
}};

} // namespace

bool conflictsWithSystemShortcut(KeyCode keyCode, HotkeyModifiers modifiers)
{
    return std::ranges::find(shortcuts, Shortcut{keyCode, modifiers}) != shortcuts.end();
}

} // namespace tallowbay
