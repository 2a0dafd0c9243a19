#pragma once

#include "views/editor/strip/OverlayScroller.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QVariantAnimation>

#include <functional>

namespace tallowbay::views {

// Where a strip is scrolled to, and how it comes there: at once, by gliding, and by a hand that
// pulls it. Beyond its ends it gives, and glides back when it is let go.
//
// Offsets are what is leftmost, in points of the content.
class StripScroll {
public:
    // All three belong to each other and outlive it. It says when the content has moved.
    StripScroll(QWidget& view, QWidget& content, OverlayScroller&, std::function<void()> whenMoved);

    double offset() const { return place; }
    double restingOffset() const; // where it comes to when it glides

    void scrollTo(double offset);
    void glideTo(double offset);
    void showSpan(double left, double right); // no further than it takes
    void contentChanged();
    void snapBack();
    void finish(); // of a glide, at once

    // A turn of the wheel, and the moves of a touchpad, which are smooth by themselves.
    void turn(double way);
    void touchpadMoved(double way);

    // A hand that drags it.
    void grab(double x);
    void dragTo(double x);
    void letGo(); // it goes on for a while if the hand moved

private:
    double furthest() const;
    double within(double offset) const; // the nearest that is no further than the ends
    void moveTo(double offset);
    void pullTo(double offset);

    QWidget& view;
    QWidget& content;
    OverlayScroller& scroller;
    const std::function<void()> whenMoved;
    double place = 0;
    QVariantAnimation glide;
    double grabbedAt = 0;
    double offsetAtGrab = 0;
    double velocity = 0; // of the drag, points a millisecond
    double lastX = 0;
    QElapsedTimer sinceMove;
    double touchpadOffset = 0; // where it would be if it did not give less beyond the ends
    QTimer touchpadRest;
};

} // namespace tallowbay::views
