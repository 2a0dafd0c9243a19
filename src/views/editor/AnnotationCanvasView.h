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
    explicit AnnotationCanvasView(const qt::GraphicsFonts&, QWidget* parent = nullptr);
    ~AnnotationCanvasView() override;

    AnnotationCanvas& canvas() { return logic; }

    // The port
    void redraw() override { update(); }
    void setCursor(CanvasCursor) override;
    std::unique_ptr<InlineTextField> showTextField(const TextFieldLook&) override;
    void becomeFirstResponder() override { setFocus(); }

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void keyPressEvent(QKeyEvent*) override;

private:
    Point canvasPoint(const QMouseEvent&) const;

    const qt::GraphicsFonts fonts;
    qt::ScaledImageCache scaledImages;
    AnnotationCanvas logic;
};

} // namespace tallowbay::views
