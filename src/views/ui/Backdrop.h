#pragma once

#include "platform/WindowSystem.h"

#include <QImage>
#include <QRect>

class QPainter;

namespace tallowbay::views {

// What is seen behind a window that covers the main screen, and through the glass of its cards.
//
// Where windows are composed, the desktop itself shines through; else the window shows how it
// looked last. Where nobody blurs what is behind the glass, a picture of it is blurred beforehand.
// Without a picture, as where the session hides its screen, the glass is dense instead.
//
// Points are those of the window, from its upper left corner. Thread: main.
class Backdrop {
public:
    // The window system outlives it.
    explicit Backdrop(const WindowSystem& windows)
        : windows(windows)
    {
    }

    // Before the window is shown, which would be on the picture, too.
    void look();

    // As look(), before something else of ours is shown for a moment: the next look is spared.
    void lookAhead();

    // Whether windows are composed now and were not, or the other way round; what is painted then
    // is another. Without a picture of the desktop, which is hidden by now, the ground is dark.
    bool compositionChanged();

    // Frees the pictures.
    void forget();

    // The window is of this size now; the pictures are stretched to it.
    void setSize(const QSize& points) { size = points; }

    bool shinesThrough() const { return composed; }
    bool blursBehind() const { return blurred; }

    // The desktop as it looked; nothing where it shines through.
    void paint(QPainter&, const QRect& part) const;

    // The same as it is seen through the glass there, blurred so much: points of deviation.
    void paintGlass(QPainter&, const QRect& part, double blurRadius) const;

private:
    QRectF sourceOf(const QRect& part, const QSize& picture) const;
    const QImage& blurredDesktop(double blurRadius) const;

    const WindowSystem& windows;
    bool composed = false;
    bool blurred = false;
    QImage desktop;
    QImage smallDesktop; // much smaller, to be blurred
    mutable QImage lastBlurred; // as it was asked for last, which is nearly always the same
    mutable double lastBlurRadius = 0;
    QSize size{1, 1};
    bool lookedAhead = false;
};

} // namespace tallowbay::views
