#pragma once

#include "platform/Keys.h"

#include <cstdint>
#include <optional>
#include <span>

namespace tallowbay::x11 {

// The number by which the X server knows a key of the keyboard: the kernel's number plus eight.
using HardwareKey = std::uint8_t;

// One place on the keyboard under both its numbers, as a US layout labels it.
struct VirtualKey {
    HardwareKey hardware;
    KeyCode code;
    char letter; // 'a' to 'z'; 0 where no letter stands
};

// Every key of a PC keyboard that has a virtual key code, each number once. The keys left of the
// space bar stand for the roles that they play here: Ctrl is Command, Alt is Option, Super is
// Control.
std::span<const VirtualKey> virtualKeys();

std::optional<KeyCode> codeAtPlace(HardwareKey);
std::optional<HardwareKey> placeOfCode(KeyCode);

} // namespace tallowbay::x11
