#include "platform/x11/keys/VirtualKeys.h"

#include <algorithm>
#include <array>

namespace tallowbay::x11 {
namespace {

// clang-format off
constexpr auto keys = std::to_array<VirtualKey>({
    {38, 0, 'a'}, {56, 11, 'b'}, {54, 8, 'c'}, {40, 2, 'd'}, {26, 14, 'e'},
    {41, 3, 'f'}, {42, 5, 'g'}, {43, 4, 'h'}, {31, 34, 'i'}, {44, 38, 'j'},
    {45, 40, 'k'}, {46, 37, 'l'}, {58, 46, 'm'}, {57, 45, 'n'}, {32, 31, 'o'},
    {33, 35, 'p'}, {24, 12, 'q'}, {27, 15, 'r'}, {39, 1, 's'}, {28, 17, 't'},
    {30, 32, 'u'}, {55, 9, 'v'}, {25, 13, 'w'}, {53, 7, 'x'}, {29, 16, 'y'},
    {52, 6, 'z'},

    // Digits
    {10, 18, 0}, {11, 19, 0}, {12, 20, 0}, {13, 21, 0}, {14, 23, 0},
    {15, 22, 0}, {16, 26, 0}, {17, 28, 0}, {18, 25, 0}, {19, 29, 0},

    // Punctuation
    {20, 27, 0}, // minus
    {21, 24, 0}, // equal
    {34, 33, 0}, // left bracket
    {35, 30, 0}, // right bracket
    {51, 42, 0}, // backslash
    {47, 41, 0}, // semicolon
    {48, 39, 0}, // quote
    {49, 50, 0}, // grave
    {59, 43, 0}, // comma
    {60, 47, 0}, // period
    {61, 44, 0}, // slash
    {94, 10, 0}, // beside the left Shift of ISO keyboards

    // Editing
    {36, 36, 0}, // Return
    {23, 48, 0}, // Tab
    {65, 49, 0}, // Space
    {22, 51, 0}, // Backspace
    {9, 53, 0}, // Escape
    {119, 117, 0}, // Delete
    {118, 114, 0}, // Insert
    {135, 110, 0}, // Menu

    // Navigation
    {110, 115, 0}, // Home
    {115, 119, 0}, // End
    {112, 116, 0}, // Page Up
    {117, 121, 0}, // Page Down
    {113, 123, 0}, // Left
    {114, 124, 0}, // Right
    {116, 125, 0}, // Down
    {111, 126, 0}, // Up

    // Modifiers
    {37, 55, 0}, // left Ctrl
    {105, 54, 0}, // right Ctrl
    {50, 56, 0}, // left Shift
    {62, 60, 0}, // right Shift
    {64, 58, 0}, // left Alt
    {108, 61, 0}, // right Alt
    {133, 59, 0}, // left Super
    {134, 62, 0}, // right Super
    {66, 57, 0}, // Caps Lock

    // Function keys
    {67, 122, 0}, // F1
    {68, 120, 0}, // F2
    {69, 99, 0}, // F3
    {70, 118, 0}, // F4
    {71, 96, 0}, // F5
    {72, 97, 0}, // F6
    {73, 98, 0}, // F7
    {74, 100, 0}, // F8
    {75, 101, 0}, // F9
    {76, 109, 0}, // F10
    {95, 103, 0}, // F11
    {96, 111, 0}, // F12
    {191, 105, 0}, // F13
    {192, 107, 0}, // F14
    {193, 113, 0}, // F15
    {194, 106, 0}, // F16
    {195, 64, 0}, // F17
    {196, 79, 0}, // F18
    {197, 80, 0}, // F19
    {198, 90, 0}, // F20

    // Keypad
    {90, 82, 0}, // 0
    {87, 83, 0}, // 1
    {88, 84, 0}, // 2
    {89, 85, 0}, // 3
    {83, 86, 0}, // 4
    {84, 87, 0}, // 5
    {85, 88, 0}, // 6
    {79, 89, 0}, // 7
    {80, 91, 0}, // 8
    {81, 92, 0}, // 9
    {91, 65, 0}, // decimal
    {63, 67, 0}, // multiply
    {86, 69, 0}, // plus
    {77, 71, 0}, // Num Lock, in the place of Clear
    {106, 75, 0}, // divide
    {104, 76, 0}, // Enter
    {82, 78, 0}, // minus
    {125, 81, 0}, // equal

    // Sound
    {121, 74, 0}, // mute
    {122, 73, 0}, // quieter
    {123, 72, 0}, // louder

    // Japanese and Korean keyboards
    {132, 93, 0}, // yen
    {97, 94, 0}, // underscore
    {129, 95, 0}, // keypad comma
    {131, 102, 0}, // left of the space bar
    {130, 104, 0}, // right of the space bar
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
