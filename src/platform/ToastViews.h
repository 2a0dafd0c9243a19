#pragma once

#include "base/Geometry.h"
#include "platform/WindowPort.h"

#include <memory>
#include <string>

namespace tallowbay {

// One line of white text on a dark, blurred, rounded rectangle. Clicks and keys go to what lies
// below it.
struct ToastContent {
    std::string message; // one line
    Font font;
    Rect frame; // of the window, on the screen
    double cornerRadius = 0;
    WindowLevel level = WindowLevel::statusBar;
};

class ToastViews {
public:
    virtual ~ToastViews() = default;

    // Not yet shown. Text that does not fit the frame is cut off.
    virtual std::unique_ptr<WindowPort> make(const ToastContent&) = 0;
};

} // namespace tallowbay
