#pragma once

#include "platform/ToastViews.h"
#include "platform/WindowSystem.h"

namespace tallowbay::views {

class QtToastViews final : public ToastViews {
public:
    // The window system outlives the toasts.
    explicit QtToastViews(WindowSystem& windows)
        : windows(windows)
    {
    }

    std::unique_ptr<WindowPort> make(const ToastContent&) override;

private:
    WindowSystem& windows;
};

} // namespace tallowbay::views
