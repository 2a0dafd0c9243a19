#pragma once

#include "platform/WindowSystem.h"
#include "ui/ToastContent.h"

#include <QPixmap>
#include <QWidget>

namespace tallowbay::views {

// What a toast looks like on the screen. It takes no input and no focus, and the window manager has
// no say in where it is.
//
// Where nobody composes the windows, nothing shines through a window. There the material is opaque
// and the window is cut to its rounded shape, so that around it stands what is really there; as the
// toast fades, its text does, and at alpha zero nothing is left of the window.
class ToastWidget final : public QWidget {
public:
    ToastWidget(const ToastContent&, WindowSystem&);

    void setAlpha(double);
    double currentAlpha() const { return alpha; }

private:
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent*) override;
    void paintMaterial(QPainter&) const;
    QRect textPlace() const;
    void paintText(QPainter&);
    QPixmap writtenText() const;
    void cutToShape();
    PixelRegion shape() const;

    WindowSystem& windows;
    const QString message;
    const QFont textFont;
    const double cornerRadius;
    const bool composited;
    const bool blursBehind;
    QPixmap text; // empty until it is seen
    double alpha = 1;
    double shownAlpha = 1; // the last one that was worth a frame
};

} // namespace tallowbay::views
