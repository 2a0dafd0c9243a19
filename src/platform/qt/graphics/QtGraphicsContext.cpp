#include "platform/qt/graphics/QtGraphicsContext.h"

#include "platform/qt/graphics/BitmapImage.h"
#include "platform/qt/graphics/QtColor.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <new>

namespace tallowbay::qt {

namespace {

// Never less than nothing: a wide line closes the inside of a small shape.
Rect grown(const Rect& rect, double by)
{
    const Rect area = rect.normalized();
    const Size size{
        std::max(area.size.width + 2 * by, 0.0), std::max(area.size.height + 2 * by, 0.0)};
    return {{area.midX() - size.width / 2, area.midY() - size.height / 2}, size};
}

// The rasteriser loses count of what lies further out; no surface reaches there.
QRectF withinRaster(const QRectF& pixels)
{
    constexpr double margin = 16;
    return pixels & QRectF(QPointF(-margin, -margin), QPointF(offscreenLimit, offscreenLimit));
}

bool isWhole(const QRectF& pixels)
{
    constexpr double tolerance = 1e-6;
    const auto near = [&](double edge) { return std::abs(edge - std::round(edge)) < tolerance; };
    return near(pixels.left()) && near(pixels.right()) && near(pixels.top())
        && near(pixels.bottom());
}

// The whole pixels that a rectangle touches. Less of one than the tolerance is rounding.
QRect touchedPixels(const QRectF& rect)
{
    constexpr double tolerance = 1e-3;
    const int left = static_cast<int>(std::floor(rect.left() + tolerance));
    const int top = static_cast<int>(std::floor(rect.top() + tolerance));
    const int right = static_cast<int>(std::ceil(rect.right() - tolerance));
    const int bottom = static_cast<int>(std::ceil(rect.bottom() - tolerance));
    return {QPoint(left, top), QSize(right - left, bottom - top).expandedTo({1, 1})};
}

// The painter's own transform under which its pixels are units.
QTransform pixelTransform(const QPainter& painter)
{
    const QTransform toPixels = painter.deviceTransform();
    return (painter.worldTransform().inverted() * toPixels).inverted();
}

} // namespace

// A shape as a path of the painter.
class QtGraphicsContext::Outline {
public:
    Outline(const QtGraphicsContext& context, const Shape& shape)
        : context(context)
    {
        std::visit(*this, shape);
    }

    void operator()(const Rect& rect) { path.addRect(context.flipped(rect)); }
    void operator()(const RoundedRect& rounded)
    {
        path.addRoundedRect(context.flipped(rounded.rect), rounded.radius, rounded.radius);
    }
    void operator()(const Oval& oval) { path.addEllipse(context.flipped(oval.rect)); }
    void operator()(const Polyline& line)
    {
        QPolygonF points;
        for (const Point& point : line.points)
            points << context.flipped(point);
        path.addPolygon(points);
        if (line.closed)
            path.closeSubpath();
    }

    QPainterPath path;

private:
    const QtGraphicsContext& context;
};

QtGraphicsContext::QtGraphicsContext(
    QPainter& painter, double heightPoints, const GraphicsFonts& fonts, ScaledImageCache& cache)
    : painter(painter)
    , heightPoints(heightPoints)
    , fonts(fonts)
    , cache(cache)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
}

QPointF QtGraphicsContext::flipped(const Point& point) const
{
    return {point.x, heightPoints - point.y};
}

QRectF QtGraphicsContext::flipped(const Rect& rect) const
{
    return {
        rect.minX(), heightPoints - rect.maxY(), rect.maxX() - rect.minX(),
        rect.maxY() - rect.minY()};
}

void QtGraphicsContext::setCompositingOperation(CompositingOperation wanted)
{
    operation = wanted;
    painter.setCompositionMode(
        wanted == CompositingOperation::copy ? QPainter::CompositionMode_Source
                                             : QPainter::CompositionMode_SourceOver);
}

void QtGraphicsContext::fill(const Shape& shape, Color color)
{
    if (const auto* rect = std::get_if<Rect>(&shape))
        fillRect(*rect, qtColor(color));
    else
        painter.fillPath(Outline(*this, shape).path, qtColor(color));
}

// In whole pixels without smoothing: where Qt smooths, a pixel that is covered entirely can keep a
// 255th of its old colour, which a mask must not let through.
void QtGraphicsContext::fillRect(const Rect& rect, const QColor& color)
{
    const QRectF area = flipped(rect);
    const QRectF pixels = painter.deviceTransform().mapRect(area);
    const QRectF visible = withinRaster(pixels);
    if (visible.isEmpty())
        return;
    const bool whole = isWhole(visible);
    if (whole)
        painter.setRenderHint(QPainter::Antialiasing, false);
    if (visible == pixels) {
        painter.fillRect(area, color);
    } else {
        const QTransform before = painter.worldTransform();
        painter.setWorldTransform(pixelTransform(painter));
        painter.fillRect(visible, color);
        painter.setWorldTransform(before);
    }
    if (whole)
        painter.setRenderHint(QPainter::Antialiasing);
}

void QtGraphicsContext::stroke(const Shape& shape, Color color, const StrokeStyle& style)
{
    if (const auto* rect = std::get_if<Rect>(&shape)) {
        if (rect->size == Size{})
            return;
        fillBetween(grown(*rect, style.width / 2), grown(*rect, -style.width / 2), color);
        return;
    }
    if (const auto* oval = std::get_if<Oval>(&shape)) {
        fillBetween(
            Oval{grown(oval->rect, style.width / 2)}, Oval{grown(oval->rect, -style.width / 2)},
            color);
        return;
    }
    const auto cap = style.cap == LineCap::round ? Qt::RoundCap : Qt::FlatCap;
    painter.strokePath(
        Outline(*this, shape).path,
        QPen(qtColor(color), style.width, Qt::SolidLine, cap, Qt::MiterJoin));
}

// Exact where the outline that Qt makes of a pen is not: at corners and on curves.
void QtGraphicsContext::fillBetween(const Shape& outer, const Shape& inner, Color color)
{
    QPainterPath path = Outline(*this, outer).path;
    path.addPath(Outline(*this, inner).path);
    path.setFillRule(Qt::OddEvenFill);
    painter.fillPath(path, qtColor(color));
}

void QtGraphicsContext::drawImage(const Image& image, const Rect& rect)
{
    if (!image)
        return;
    const QRect pixels = touchedPixels(painter.deviceTransform().mapRect(flipped(rect)));
    painter.save();
    painter.setWorldTransform(pixelTransform(painter));
    painter.drawImage(pixels.topLeft(), cache.scaled(image, pixels.size()));
    painter.restore();
}

void QtGraphicsContext::drawText(
    const std::string& text, const Point& origin, const TextStyle& style)
{
    const GraphicsFonts::Measures measures = fonts.measures(text, style.font);
    if (style.background)
        fill(Rect{origin, measures.box}, *style.background);
    const auto [font, factor] = fonts.scaled(style.font);
    double baseline = origin.y + measures.box.height - measures.ascent;
    painter.save();
    painter.setPen(qtColor(style.foreground));
    painter.setFont(font);
    const QTransform before = painter.worldTransform();
    for (const QString& line : measures.lines) {
        const QPointF start = flipped(Point{origin.x, baseline});
        painter.setWorldTransform(
            QTransform::fromTranslate(start.x(), start.y()).scale(factor, factor) * before);
        painter.drawText(QPointF(0, 0), line);
        baseline -= measures.lineHeight;
    }
    painter.restore();
}

std::optional<Bitmap> QtOffscreenGraphics::draw(
    PixelSize size, double pixelsPerUnit, const Drawing& drawing) const
try {
    if (std::min(size.width, size.height) < 1 || std::max(size.width, size.height) > offscreenLimit)
        return std::nullopt;
    Bitmap bitmap(size);
    QImage surface = imageOver(bitmap);
    QPainter painter(&surface);
    painter.scale(pixelsPerUnit, pixelsPerUnit);
    ScaledImageCache cache;
    QtGraphicsContext context(painter, size.height / pixelsPerUnit, fonts, cache);
    drawing(context);
    painter.end();
    return bitmap;
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

} // namespace tallowbay::qt
