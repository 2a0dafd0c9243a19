#pragma once

#include "editor/AnnotationCanvas.h"
#include "platform/qt/graphics/GraphicsFonts.h"
#include "platform/qt/graphics/ScaledImageCache.h"

#include <QWidget>

namespace tallowbay::views {

// The annotation canvas in a window. It paints nothing but the screenshot and its items, so that
// what lies behind it shows.
class AnnotationCanvasView final : public QWidget, public AnnotationCanvasPort {
public:
    AnnotationCanvasView(AnnotationCanvas&, const qt::GraphicsFonts&, QWidget* parent = nullptr);

    // Paints nothing beyond the round lower corners of a card that it fills the lower part of. In
    // points; 0, as it is at first: it has all of its rectangle.
    void setLowerCornerRadius(double radius) { lowerCornerRadius = radius; }

    // The port
    void redraw() override { update(); }
    void setCursor(CanvasCursor) override;
    std::unique_ptr<InlineTextField> showTextField(const TextFieldLook&) override;
    void becomeFirstResponder() override { setFocus(); }

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void hideEvent(QHideEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void keyPressEvent(QKeyEvent*) override;

private:
    Point canvasPoint(const QMouseEvent&) const;

    AnnotationCanvas& logic;
    const qt::GraphicsFonts fonts;
    qt::ScaledImageCache scaledImages;
    double lowerCornerRadius = 0;
};

} // namespace tallowbay::views
