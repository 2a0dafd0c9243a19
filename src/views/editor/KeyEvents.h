#pragma once

#include "platform/Keys.h"

class QKeyEvent;

namespace tallowbay::views {

// A key that belongs to no virtual key code.
inline constexpr KeyCode unknownKeyCode = 0xFFFF;

// The key as the logic knows it. Both keys that delete count as one, and so do both that confirm.
KeyPress keyPressOf(const QKeyEvent&);

} // namespace tallowbay::views
