#include "views/ui/GlassCard.h"

#include "platform/qt/graphics/QtColor.h"
#include "ui/GradientRim.h"
#include "views/ui/RoundedPath.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tallowbay::views {

namespace {

constexpr double blurBehindGlass = 26;
constexpr QColor shadeOnCard(0, 0, 0, 96);

} // namespace

GlassCard::GlassCard(const Backdrop& backdrop, double cornerRadius, QWidget* parent)
    : CustomBlurView(backdrop, parent)
    , cornerRadius(cornerRadius)
    , rim(new GlassBorderOverlay(cornerRadius, this))
{
    setBlurRadius(blurBehindGlass);
}

void GlassCard::resizeEvent(QResizeEvent* event)
{
    CustomBlurView::resizeEvent(event);
    rim->setGeometry(rect());
    rim->raise();
}

void GlassCard::drawOnGround(QPainter& painter) const
{
    painter.fillRect(rect(), qt::qtColor(glassTint));
    if (onCard)
        painter.fillRect(rect(), shadeOnCard);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    for (const QRect& part : partsToCut())
        painter.drawPixmap(part.topLeft(), shapeOf(part));
}

// The corners, since a large card has millions of pixels that stay as they are. Between whole
// pixels they would leave seams.
std::vector<QRect> GlassCard::partsToCut() const
{
    const double scale = devicePixelRatioF();
    const int side = static_cast<int>(std::ceil(cornerRadius));
    if (scale != std::round(scale) || 2 * side > std::min(width(), height()))
        return {rect()};
    const int right = width() - side;
    const int bottom = height() - side;
    return {
        {0, 0, side, side},
        {right, 0, side, side},
        {0, bottom, side, side},
        {right, bottom, side, side}};
}

// Cut out rather than clipped, since only so the corners are smooth.
QPixmap GlassCard::shapeOf(const QRect& part) const
{
    const double scale = devicePixelRatioF();
    QPixmap shape((QSizeF(part.size()) * scale).toSize());
    shape.setDevicePixelRatio(scale);
    shape.fill(Qt::transparent);
    QPainter painter(&shape);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-part.topLeft());
    painter.fillPath(roundedPath(rect(), cornerRadius), Qt::black);
    return shape;
}

GlassBorderOverlay::GlassBorderOverlay(double cornerRadius, QWidget* parent)
    : QWidget(parent)
    , cornerRadius(cornerRadius)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void GlassBorderOverlay::paintEvent(QPaintEvent*)
{
    const auto corner = [this](const Point& unit) {
        return QPointF(unit.x * width(), (1 - unit.y) * height());
    };
    QLinearGradient light(corner(GradientRim::start), corner(GradientRim::end));
    double place = 0;
    for (const Color& color : GradientRim::colors) {
        light.setColorAt(place, qt::qtColor(color));
        place += 0.5;
    }
    const auto [rim, radius] = GradientRim::path({double(width()), double(height())}, cornerRadius);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(light, GradientRim::lineWidth));
    painter.drawRoundedRect(
        QRectF(rim.origin.x, rim.origin.y, rim.size.width, rim.size.height), radius, radius);
}

} // namespace tallowbay::views
