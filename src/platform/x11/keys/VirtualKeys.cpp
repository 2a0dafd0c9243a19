#include "platform/x11/keys/VirtualKeys.h"

#include <algorithm>
#include <array>

namespace tallowbay::x11 {
namespace {

// clang-format off
constexpr auto keys = std::to_array<VirtualKey>({
    {38, keyCode::a, 'a'}, {56, keyCode::b, 'b'}, {54, keyCode::c, 'c'},
    {40, keyCode::d, 'd'}, {26, keyCode::e, 'e'}, {41, keyCode::f, 'f'},
    {42, keyCode::g, 'g'}, {43, keyCode::h, 'h'}, {31, keyCode::i, 'i'},
    {44, keyCode::j, 'j'}, {45, keyCode::k, 'k'}, {46, keyCode::l, 'l'},
    {58, keyCode::m, 'm'}, {57, keyCode::n, 'n'}, {32, keyCode::o, 'o'},
    {33, keyCode::p, 'p'}, {24, keyCode::q, 'q'}, {27, keyCode::r, 'r'},
    {39, keyCode::s, 's'}, {28, keyCode::t, 't'}, {30, keyCode::u, 'u'},
    {55, keyCode::v, 'v'}, {25, keyCode::w, 'w'}, {53, keyCode::x, 'x'},
    {29, keyCode::y, 'y'}, {52, keyCode::z, 'z'},

    // Digits
    {10, keyCode::digit1, 0}, {11, keyCode::digit2, 0}, {12, keyCode::digit3, 0},
    {13, keyCode::digit4, 0}, {14, keyCode::digit5, 0}, {15, keyCode::digit6, 0},
    {16, keyCode::digit7, 0}, {17, keyCode::digit8, 0}, {18, keyCode::digit9, 0},
    {19, keyCode::digit0, 0},

    // Punctuation
    {20, keyCode::minus, 0},
    {21, keyCode::equal, 0},
    {34, keyCode::leftBracket, 0},
    {35, keyCode::rightBracket, 0},
    {51, keyCode::backslash, 0},
    {47, keyCode::semicolon, 0},
    {48, keyCode::quote, 0},
    {49, keyCode::grave, 0},
    {59, keyCode::comma, 0},
    {60, keyCode::period, 0},
    {61, keyCode::slash, 0},
    {94, keyCode::isoExtra, 0}, // beside the left Shift of ISO keyboards

    // Editing
    {36, keyCode::returnKey, 0},
    {23, keyCode::tab, 0},
    {65, keyCode::space, 0},
    {22, keyCode::backspace, 0}, // Backspace
    {9, keyCode::escape, 0},
    {119, keyCode::forwardDelete, 0}, // Delete
    {118, keyCode::insert, 0}, // Insert
    {135, keyCode::menu, 0}, // Menu

    // Navigation
    {110, keyCode::home, 0},
    {115, keyCode::end, 0},
    {112, keyCode::pageUp, 0},
    {117, keyCode::pageDown, 0},
    {113, keyCode::left, 0},
    {114, keyCode::right, 0},
    {116, keyCode::down, 0},
    {111, keyCode::up, 0},

    // Modifiers
    {37, keyCode::command, 0}, // left Ctrl
    {105, keyCode::rightCommand, 0}, // right Ctrl
    {50, keyCode::shift, 0},
    {62, keyCode::rightShift, 0},
    {64, keyCode::option, 0}, // left Alt
    {108, keyCode::rightOption, 0}, // right Alt
    {133, keyCode::control, 0}, // left Super
    {134, keyCode::rightControl, 0}, // right Super
    {66, keyCode::capsLock, 0},

    // Function keys
    {67, keyCode::f1, 0},
    {68, keyCode::f2, 0},
    {69, keyCode::f3, 0},
    {70, keyCode::f4, 0},
    {71, keyCode::f5, 0},
    {72, keyCode::f6, 0},
    {73, keyCode::f7, 0},
    {74, keyCode::f8, 0},
    {75, keyCode::f9, 0},
    {76, keyCode::f10, 0},
    {95, keyCode::f11, 0},
    {96, keyCode::f12, 0},
    {191, keyCode::f13, 0},
    {192, keyCode::f14, 0},
    {193, keyCode::f15, 0},
    {194, keyCode::f16, 0},
    {195, keyCode::f17, 0},
    {196, keyCode::f18, 0},
    {197, keyCode::f19, 0},
    {198, keyCode::f20, 0},

    // Keypad
    {90, keyCode::keypad0, 0},
    {87, keyCode::keypad1, 0},
    {88, keyCode::keypad2, 0},
    {89, keyCode::keypad3, 0},
    {83, keyCode::keypad4, 0},
    {84, keyCode::keypad5, 0},
    {85, keyCode::keypad6, 0},
    {79, keyCode::keypad7, 0},
    {80, keyCode::keypad8, 0},
    {81, keyCode::keypad9, 0},
    {91, keyCode::keypadDecimal, 0},
    {63, keyCode::keypadMultiply, 0},
    {86, keyCode::keypadPlus, 0},
    {77, keyCode::keypadClear, 0}, // Num Lock, in the place of Clear
    {106, keyCode::keypadDivide, 0},
    {104, keyCode::keypadEnter, 0},
    {82, keyCode::keypadMinus, 0},
    {125, keyCode::keypadEqual, 0},

    // Sound
    {121, keyCode::mute, 0},
    {122, keyCode::volumeDown, 0},
    {123, keyCode::volumeUp, 0},

    // Japanese and Korean keyboards
    {132, keyCode::yen, 0},
    {97, keyCode::underscore, 0},
    {129, keyCode::keypadComma, 0},
    {131, keyCode::leftOfSpace, 0},
    {130, keyCode::rightOfSpace, 0},
});
// clang-format on

} // namespace

std::span<const VirtualKey> virtualKeys()
{
    return keys;
}

std::optional<KeyCode> codeAtPlace(HardwareKey hardware)
{
    const auto* key = std::ranges::find(keys, hardware, &VirtualKey::hardware);
    return key == keys.end() ? std::nullopt : std::optional(key->code);
}

std::optional<HardwareKey> placeOfCode(KeyCode code)
{
    const auto* key = std::ranges::find(keys, code, &VirtualKey::code);
    return key == keys.end() ? std::nullopt : std::optional(key->hardware);
}

} // namespace tallowbay::x11
