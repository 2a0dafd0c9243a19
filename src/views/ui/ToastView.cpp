#include "views/ui/ToastView.h"

#include <QTimer>

namespace tallowbay::views {

void ToastView::orderFront()
{
    widget.show();
    widget.raise();
}

int ToastView::takeOver()
{
    if (animation)
        animation->disconnect();
    return ++changes;
}

void ToastView::setAlpha(double alpha)
{
    takeOver();
    widget.setAlpha(alpha);
}

void ToastView::animateAlpha(
    double to, std::chrono::milliseconds duration, std::function<void()> completion)
{
    const int change = takeOver();
    animation = new QVariantAnimation(&widget);
    animation->setStartValue(widget.currentAlpha());
    animation->setEndValue(to);
    animation->setDuration(static_cast<int>(duration.count()));
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    QObject::connect(
        animation, &QVariantAnimation::valueChanged, &widget,
        [this](const QVariant& value) { widget.setAlpha(value.toDouble()); });
    // The widget is the context: with it the completion goes. It may destroy the widget, so it has
    // a turn of the main loop for itself.
    QTimer::singleShot(duration, Qt::PreciseTimer, &widget, [this, to, completion, change] {
        if (change == changes)
            setAlpha(to);
        if (completion)
            completion();
    });
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace tallowbay::views
