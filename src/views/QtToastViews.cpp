#include "views/QtToastViews.h"

#include "views/ToastWidget.h"

#include <QPointer>
#include <QTimer>
#include <QVariantAnimation>

namespace tallowbay::views {

namespace {

class ToastWindow final : public WindowPort {
public:
    explicit ToastWindow(std::unique_ptr<ToastWidget> toast)
        : widget(std::move(toast))
    {
    }

    void orderFront() override
    {
        widget->show();
        widget->raise();
    }
    void setAlpha(double alpha) override { widget->setAlpha(alpha); }
    void animateAlpha(
        double to, std::chrono::milliseconds duration, std::function<void()> completion) override;
    void close() override { widget->close(); }

private:
    std::unique_ptr<ToastWidget> widget;
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
    return std::make_unique<ToastWindow>(std::make_unique<ToastWidget>(content, windows));
}

} // namespace tallowbay::views
