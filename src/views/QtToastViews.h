#pragma once

#include "views/ToastWidget.h"

#include <QPointer>

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
    std::vector<QPointer<ToastWidget>> toasts; // oldest first
};

} // namespace tallowbay::views
