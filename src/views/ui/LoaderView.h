#pragma once

#include "base/Geometry.h"
#include "platform/WindowSystem.h"
#include "ui/LoaderPort.h"
#include "views/ui/Backdrop.h"
#include "views/ui/Fade.h"

#include <QIcon>
#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

namespace tallowbay {
class TallowLoaderPanel;
}

namespace tallowbay::views {

// What the loader looks like on the screen.
class LoaderWidget final : public QWidget {
public:
    LoaderWidget(const TallowLoaderPanel&, WindowSystem&);

    void setAlpha(double);
    double currentAlpha() const { return alpha; }
    void setOrigin(const Point&);
    void paintAtOnce(); // once it is shown
    void startPulse() { pulse.start(); }
    void stopPulse() { pulse.stop(); }

protected:
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent*) override;

private:
    const QPixmap& iconOfThisScreen();
    double iconScale() const;
    void cutToShape();

    WindowSystem& windows;
    const bool composited;
    const int margin; // around the card, for its shadow
    const QIcon drawing;
    QPixmap icon; // the drawing in the pixels of the screen that it was last painted on
    QVariantAnimation pulse;
    double alpha = 1;
};

// The loader's window, and how it fades.
class LoaderView final : public LoaderPort {
public:
    LoaderView(const TallowLoaderPanel& logic, WindowSystem& windows, Backdrop& backdrop)
        : widget(logic, windows)
        , backdrop(backdrop)
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
    void close() override;
    void setOrigin(Point origin) override { widget.setOrigin(origin); }
    void startPulse() override { widget.startPulse(); }
    void stopPulse() override { widget.stopPulse(); }

private:
    LoaderWidget widget;
    Fade fade{widget, [this](double alpha) { widget.setAlpha(alpha); }};
    Backdrop& backdrop;
};

} // namespace tallowbay::views
