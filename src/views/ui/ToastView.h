#pragma once

#include "ui/WindowPort.h"
#include "views/ui/Fade.h"
#include "views/ui/ToastWidget.h"

namespace tallowbay::views {

// A toast's window, and how it fades.
class ToastView final : public WindowPort {
public:
    ToastView(const ToastContent& content, WindowSystem& windows)
        : widget(content, windows)
    {
    }

    // The port
    void orderFront() override;
    void setAlpha(double alpha) override { fade.setAlpha(alpha); }
    void animateAlpha(
        double to, std::chrono::milliseconds duration, std::function<void()> completion) override
    {
        fade.animateAlpha(to, duration, std::move(completion));
    }
    void close() override { widget.close(); }

private:
    ToastWidget widget;
    Fade fade{widget, [this](double alpha) { widget.setAlpha(alpha); }};
};

} // namespace tallowbay::views
