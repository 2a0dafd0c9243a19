#pragma once

#include "libexec/screencapture/FrozenDesktop.h"
#include "libexec/screencapture/RegionSelection.h"

#include <QEventLoop>
#include <QRasterWindow>
#include <QTimer>

namespace tallowbay::screencapture {

// A window over all screens that shows them frozen, dims what is not selected and lets the user
// select. No window manager has a say in it.
class SelectionOverlay : public QRasterWindow {
public:
    // The desktop outlives the window.
    explicit SelectionOverlay(const FrozenDesktop&);

    // The selected region of the desktop; empty if the user cancelled. Returns when all keys and
    // buttons that ended it are up again, so that no other program gets to see them.
    std::optional<QRect> run();

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void keyReleaseEvent(QKeyEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;

private:
    // What is drawn besides the picture, in coordinates of the window.
    struct Chrome {
        QRect region; // null if there is none
        QRect label;
        QString labelText;
        int line = 1;
    };

    void grabInput();
    void selectionChanged();
    void showCrosshair();
    bool ended() const { return selection.cancelled() || selection.confirmed(); }
    QPoint desktopPoint(const QMouseEvent&) const;
    Chrome chrome() const;
    QRegion covered(const Chrome&) const;
    void paintRegion(QPainter&, const Chrome&) const;
    void paintLabel(QPainter&, const Chrome&) const;
    QFont labelFont(double scale) const;

    const FrozenDesktop& desktop;
    QImage dimmed;
    RegionSelection selection;
    Chrome shown;
    double crosshairScale = 0;
    QTimer grabs;
    QEventLoop loop;
    bool hasKeyboard = false;
    bool hasMouse = false;
};

} // namespace tallowbay::screencapture
