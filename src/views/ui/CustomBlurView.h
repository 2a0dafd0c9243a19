#pragma once

#include "views/ui/Backdrop.h"

#include <QPixmap>
#include <QWidget>

namespace tallowbay::views {

// A part of a window through which what lies behind the window is seen, blurred and darkened. How
// much it is blurred is the view's own business, and holds for all such views within it.
//
// Where the desktop itself blurs what shines through windows, it does so in its own measure.
class CustomBlurView : public QWidget {
public:
    static constexpr double usualBlurRadius = 20; // points

    // The backdrop outlives it.
    CustomBlurView(const Backdrop&, QWidget* parent);

    // The deviation of the blur, in points. Whenever this view is laid out or comes into a window,
    // the views within it take it over.
    void setBlurRadius(double points);
    double blurRadius() const { return deviation; }

    // The backdrop has looked again, or has forgotten.
    void backdropChanged();

protected:
    // What lies on the blurred ground, in its shape: drawn once for many paintings.
    virtual void drawOnGround(QPainter&) const { }

    bool event(QEvent*) override;
    void paintEvent(QPaintEvent*) override;
    void moveEvent(QMoveEvent*) override { backdropChanged(); }
    void resizeEvent(QResizeEvent*) override;

private:
    void blurAlikeWithin();
    QPixmap drawFace() const;

    const Backdrop& backdrop;
    double deviation = usualBlurRadius;
    QPixmap face; // drawn anew when the view or what is behind it changes
};

} // namespace tallowbay::views
