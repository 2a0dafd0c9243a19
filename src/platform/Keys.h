#pragma once

#include <cstdint>

namespace tallowbay {

// Virtual key codes: the key's place on an ANSI keyboard, by the letter that stands there in the
// user's layout (V = 9 is the key that types a "v").
using KeyCode = std::uint32_t;

// The codes that exist, by what stands on the key.
namespace keyCode {
inline constexpr KeyCode a = 0, b = 11, c = 8, d = 2, e = 14, f = 3, g = 5, h = 4, i = 34, j = 38,
                         k = 40, l = 37, m = 46, n = 45, o = 31, p = 35, q = 12, r = 15, s = 1,
                         t = 17, u = 32, v = 9, w = 13, x = 7, y = 16, z = 6;

inline constexpr KeyCode digit0 = 29, digit1 = 18, digit2 = 19, digit3 = 20, digit4 = 21,
                         digit5 = 23, digit6 = 22, digit7 = 26, digit8 = 28, digit9 = 25;

inline constexpr KeyCode minus = 27, equal = 24, leftBracket = 33, rightBracket = 30,
                         backslash = 42, semicolon = 41, quote = 39, grave = 50, comma = 43,
                         period = 47, slash = 44;

inline constexpr KeyCode returnKey = 36, tab = 48, space = 49, escape = 53, home = 115, end = 119,
                         pageUp = 116, pageDown = 121, left = 123, right = 124, down = 125,
                         up = 126;

inline constexpr KeyCode backspace = 51; // it is this one that is called "Delete"
inline constexpr KeyCode forwardDelete = 117;
inline constexpr KeyCode insert = 114; // the place is Help's
inline constexpr KeyCode menu = 110;

inline constexpr KeyCode f1 = 122, f2 = 120, f3 = 99, f4 = 118, f5 = 96, f6 = 97, f7 = 98, f8 = 100,
                         f9 = 101, f10 = 109, f11 = 103, f12 = 111, f13 = 105, f14 = 107, f15 = 113,
                         f16 = 106, f17 = 64, f18 = 79, f19 = 80, f20 = 90;

inline constexpr KeyCode command = 55, rightCommand = 54, shift = 56, rightShift = 60, option = 58,
                         rightOption = 61, control = 59, rightControl = 62, capsLock = 57;

inline constexpr KeyCode keypad0 = 82, keypad1 = 83, keypad2 = 84, keypad3 = 85, keypad4 = 86,
                         keypad5 = 87, keypad6 = 88, keypad7 = 89, keypad8 = 91, keypad9 = 92,
                         keypadDecimal = 65, keypadMultiply = 67, keypadPlus = 69, keypadClear = 71,
                         keypadDivide = 75, keypadEnter = 76, keypadMinus = 78, keypadEqual = 81;

inline constexpr KeyCode mute = 74, volumeDown = 73, volumeUp = 72;

inline constexpr KeyCode isoExtra = 10; // beside the left Shift
inline constexpr KeyCode yen = 93, underscore = 94, keypadComma = 95;
inline constexpr KeyCode leftOfSpace = 102, rightOfSpace = 104; // on Japanese keyboards
} // namespace keyCode

// The modifiers of a key event, as a mask of event flags.
using EventFlags = std::uint64_t;

namespace eventFlag {
inline constexpr EventFlags shift = 1 << 17;
inline constexpr EventFlags control = 1 << 18;
inline constexpr EventFlags option = 1 << 19;
inline constexpr EventFlags command = 1 << 20;
} // namespace eventFlag

// Roles, not keys: on Linux Command is the Ctrl key, Option is Alt and Control is Super.

struct KeyPress {
    KeyCode keyCode = 0;
    EventFlags flags = 0;
    bool operator==(const KeyPress&) const = default;
};

enum class KeyDirection { down, up };

} // namespace tallowbay
