#pragma once

#include "ui/WindowPort.h"
#include "views/ui/ToastWidget.h"

#include <QPointer>
#include <QVariantAnimation>

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
    void setAlpha(double) override;
    void animateAlpha(
        double to, std::chrono::milliseconds duration, std::function<void()> completion) override;
    void close() override { widget.close(); }

private:
    int takeOver();

    ToastWidget widget;
    QPointer<QVariantAnimation> animation;
    int changes = 0; // the number of the last one who was asked to set the alpha
};

} // namespace tallowbay::views
