#pragma once

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

#include <chrono>
#include <functional>

namespace tallowbay::views {

// How a window's alpha changes, as WindowPort demands it. Thread: main.
class Fade {
public:
    // The widget is whose alpha is applied, and with it an animation and its completion end.
    Fade(QWidget& widget, std::function<void(double)> apply)
        : widget(widget)
        , apply(std::move(apply))
    {
    }

    double currentAlpha() const { return alpha; }

    void setAlpha(double);
    void animateAlpha(double to, std::chrono::milliseconds, std::function<void()> completion);

private:
    int takeOver();
    void change(double to);

    QWidget& widget;
    const std::function<void(double)> apply;
    QPointer<QVariantAnimation> animation;
    double alpha = 1;
    int changes = 0; // the number of the last one who was asked to set the alpha
};

} // namespace tallowbay::views
