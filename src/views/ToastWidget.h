#pragma once

#include "platform/ToastViews.h"
#include "platform/WindowSystem.h"

#include <QImage>
#include <QWidget>

namespace tallowbay::views {

// What a toast looks like on the screen. It takes no input and no focus, and the window manager has
// no say in where it is.
//
// Where nobody composes the windows, nothing shines through a window: then a picture of what lay
// below when the toast came stands in for it.
class ToastWidget final : public QWidget {
public:
    ToastWidget(const ToastContent&, WindowSystem&);

    // Takes the picture of what lies below, where one is needed. The older toasts are still on the
    // screen, but not meant to be in it.
    void captureBackdrop(const std::vector<const ToastWidget*>& olderToasts);

    void setAlpha(double);
    double currentAlpha() const { return alpha; }

private:
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent*) override;
    void paintToast(QPainter&) const;
    void paintText(QPainter&) const;
    void askForBlurBehind();
    QPainterPath shape() const;

    WindowSystem& windows;
    const QString message;
    const QFont textFont;
    const double cornerRadius;
    const bool composited;
    const bool blursBehind;
    double alpha = 1;
    QImage backdrop; // of the whole window, in device pixels
    QImage blurredBackdrop;
};

} // namespace tallowbay::views
