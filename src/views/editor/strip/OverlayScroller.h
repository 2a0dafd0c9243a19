#pragma once

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

#include <functional>

namespace tallowbay::views {

// A thin horizontal scroller that lies over what it scrolls: it shows where one is while that
// changes or the mouse is on it, and then hides itself. The user can drag it.
class OverlayScroller final : public QWidget {
public:
    explicit OverlayScroller(QWidget* parent);

    // The user has dragged it so far that this point is to be leftmost.
    std::function<void(double offset)> onScrolled;

    // What part of how much is seen.
    void setView(double offset, double visible, double whole);

    // Shows it for a moment.
    void flash();

protected:
    void paintEvent(QPaintEvent*) override;
    void enterEvent(QEnterEvent*) override;
    void leaveEvent(QEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void hideEvent(QHideEvent*) override;
    bool event(QEvent*) override;

private:
    bool isNeeded() const { return whole > visible; }
    QRectF knob() const;
    void fadeTo(double opacity);
    void endDrag();

    double offset = 0;
    double visible = 1;
    double whole = 1;
    double grabbedAt = 0; // of the knob, where it is dragged
    bool dragging = false;
    bool hovered = false;
    double opacity = 0;
    QTimer rest;
    QVariantAnimation fade;
};

} // namespace tallowbay::views
