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

namespace key {
constexpr KeyCode a = 0, s = 1, d = 2, f = 3, h = 4, g = 5, z = 6, x = 7, c = 8, v = 9, b = 11,
                  q = 12, w = 13, e = 14, r = 15, y = 16, t = 17, o = 31, u = 32, i = 34, p = 35,
                  l = 37, j = 38, k = 40, n = 45, m = 46;
constexpr KeyCode three = 20, four = 21, six = 22, five = 23;
constexpr KeyCode comma = 43, tab = 48, space = 49, backspace = 51, escape = 53;
} // namespace key

constexpr std::array<Shortcut, systemShortcutCount> shortcuts{{
    {key::space, cmd},
    {key::tab, cmd},
    {key::tab, cmd | shift},
    {key::three, cmd | shift},
    {key::four, cmd | shift},
    {key::five, cmd | shift},
    {key::six, cmd | shift},
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
