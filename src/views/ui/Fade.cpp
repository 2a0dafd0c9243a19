#include "views/ui/Fade.h"

#include <QTimer>

namespace tallowbay::views {

int Fade::takeOver()
{
    if (animation)
        animation->disconnect();
    return ++changes;
}

void Fade::change(double to)
{
    alpha = to;
    apply(to);
}

void Fade::setAlpha(double to)
{
    takeOver();
    change(to);
}

void Fade::animateAlpha(
    double to, std::chrono::milliseconds duration, std::function<void()> completion)
{
    const int number = takeOver();
    animation = new QVariantAnimation(&widget);
    animation->setStartValue(alpha);
    animation->setEndValue(to);
    animation->setDuration(static_cast<int>(duration.count()));
    animation->setEasingCurve(QEasingCurve::InOutQuad);
    QObject::connect(
        animation, &QVariantAnimation::valueChanged, &widget,
        [this](const QVariant& value) { change(value.toDouble()); });
    // The widget is the context: with it the completion goes. It may destroy the widget, so it has
    // a turn of the main loop for itself.
    QTimer::singleShot(duration, Qt::PreciseTimer, &widget, [this, to, completion, number] {
        if (number == changes)
            setAlpha(to);
        if (completion)
            completion();
    });
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

} // namespace tallowbay::views
