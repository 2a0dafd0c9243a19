#pragma once

#include "base/Geometry.h"
#include "ui/WindowPort.h"

#include <string>

namespace tallowbay {

// One line of white text on a dark, blurred, rounded rectangle. Clicks and keys go to what lies
// below it. Text that does not fit the frame is cut off.
struct ToastContent {
    std::string message; // one line
    Font font;
    Rect frame; // of the window, on the screen
    double cornerRadius = 0;
    WindowLevel level = WindowLevel::statusBar;
};

} // namespace tallowbay
