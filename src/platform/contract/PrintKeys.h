#pragma once

#include "platform/Keys.h"

#include <ostream>

namespace tallowbay {

// So that a failing test shows which keys it got.
inline void PrintTo(const KeyPress& press, std::ostream* out)
{
    *out << "key " << press.keyCode << " with flags " << std::hex << press.flags << std::dec;
}

} // namespace tallowbay
