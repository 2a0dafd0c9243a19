#pragma once

#include "views/ToastWidget.h"

#include <QPointer>

namespace tallowbay::views {

class QtToastViews final : public ToastViews {
public:
    std::unique_ptr<WindowPort> make(const ToastContent&) override;

private:
    std::vector<QPointer<ToastWidget>> toasts; // oldest first
};

} // namespace tallowbay::views
