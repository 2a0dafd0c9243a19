#pragma once

#include "platform/Graphics.h"
#include "platform/OffscreenGraphics.h"
#include "platform/qt/graphics/GraphicsFonts.h"
#include "platform/qt/graphics/ScaledImageCache.h"

class QColor;
class QPainter;
class QPointF;
class QRectF;

namespace tallowbay::qt {

// Draws with a painter whose own coordinates are points with y downwards.
class QtGraphicsContext final : public GraphicsContext {
public:
    // The height is that of the surface, in points. All three others outlive the context.
    QtGraphicsContext(QPainter&, double heightPoints, const GraphicsFonts&, ScaledImageCache&);

    void setCompositingOperation(CompositingOperation) override;
    CompositingOperation compositingOperation() const override { return operation; }
    void fill(const Shape&, Color) override;
    void stroke(const Shape&, Color, const StrokeStyle&) override;
    void drawImage(const Image&, const Rect&) override;
    void drawText(const std::string& text, const Point& origin, const TextStyle&) override;

private:
    class Outline;

    void fillRect(const Rect&, const QColor&);
    void fillBetween(const Shape& outer, const Shape& inner, Color);
    QPointF flipped(const Point&) const;
    QRectF flipped(const Rect&) const;

    QPainter& painter;
    double heightPoints;
    const GraphicsFonts& fonts;
    ScaledImageCache& cache;
    CompositingOperation operation = CompositingOperation::sourceOver;
};

// Thread: any, after the fonts were made.
class QtOffscreenGraphics final : public OffscreenGraphics {
public:
    explicit QtOffscreenGraphics(GraphicsFonts fonts)
        : fonts(std::move(fonts))
    {
    }

    std::optional<Bitmap> draw(PixelSize, double pixelsPerUnit, const Drawing&) const override;

private:
    GraphicsFonts fonts;
};

} // namespace tallowbay::qt
