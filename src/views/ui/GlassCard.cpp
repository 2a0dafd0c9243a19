#include "views/ui/GlassCard.h"

#include "platform/qt/graphics/QtColor.h"
#include "ui/GradientRim.h"
#include "views/ui/RoundedPath.h"

#include <QPainter>

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

// Cut out rather than clipped, since only so the corners are smooth.
void GlassCard::drawOnGround(QPainter& painter) const
{
    painter.fillRect(rect(), qt::qtColor(glassTint));
    if (onCard)
        painter.fillRect(rect(), shadeOnCard);
    const double scale = devicePixelRatioF();
    QPixmap shape((QSizeF(size()) * scale).toSize());
    shape.setDevicePixelRatio(scale);
    shape.fill(Qt::transparent);
    QPainter shapePainter(&shape);
    shapePainter.setRenderHint(QPainter::Antialiasing);
    shapePainter.fillPath(roundedPath(rect(), cornerRadius), Qt::black);
    shapePainter.end();
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawPixmap(0, 0, shape);
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
