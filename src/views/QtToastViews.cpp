#include "views/QtToastViews.h"

#include <QTimer>
#include <QVariantAnimation>

namespace tallowbay::views {

namespace {

class ToastWindow final : public WindowPort {
public:
    ToastWindow(std::unique_ptr<ToastWidget> toast, std::vector<QPointer<ToastWidget>> older)
        : widget(std::move(toast))
        , olderToasts(std::move(older))
    {
    }

    void orderFront() override
    {
        std::vector<const ToastWidget*> visible;
        for (const auto& older : olderToasts)
            if (older && older->isVisible())
                visible.push_back(older);
        widget->captureBackdrop(visible);
        widget->show();
        widget->raise();
    }
    void setAlpha(double alpha) override { widget->setAlpha(alpha); }
    void animateAlpha(
        double to, std::chrono::milliseconds duration, std::function<void()> completion) override;
    void close() override { widget->close(); }

private:
    std::unique_ptr<ToastWidget> widget;
    std::vector<QPointer<ToastWidget>> olderToasts;
    QPointer<QVariantAnimation> animation;
};

void ToastWindow::animateAlpha(
    double to, std::chrono::milliseconds duration, std::function<void()> completion)
{
    if (animation)
        animation->disconnect();
    animation = new QVariantAnimation(widget.get());
    animation->setStartValue(widget->currentAlpha());
    animation->setEndValue(to);
    animation->setDuration(static_cast<int>(duration.count()));
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    QObject::connect(
        animation, &QVariantAnimation::valueChanged, widget.get(),
        [this](const QVariant& value) { widget->setAlpha(value.toDouble()); });
    // The widget is the context: with it the completion goes. It may destroy the widget, so it has
    // a turn of the main loop for itself.
    QTimer::singleShot(duration, Qt::PreciseTimer, widget.get(), [this, to, completion] {
        widget->setAlpha(to);
        const auto done = completion;
        if (done)
            done();
    });
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace

std::unique_ptr<WindowPort> QtToastViews::make(const ToastContent& content)
{
    std::erase_if(toasts, [](const auto& toast) { return toast.isNull(); });
    auto toast = std::make_unique<ToastWidget>(content, windows);
    const QPointer<ToastWidget> newest = toast.get();
    auto window = std::make_unique<ToastWindow>(std::move(toast), toasts);
    toasts.push_back(newest);
    return window;
}

} // namespace tallowbay::views
