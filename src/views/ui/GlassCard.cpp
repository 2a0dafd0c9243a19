#include "views/ui/GlassCard.h"

#include "platform/qt/graphics/QtColor.h"
#include "ui/GradientRim.h"
#include "views/ui/RoundedPath.h"

#include <QPainter>

namespace tallowbay::views {

namespace {

constexpr QColor shadeOnCard(0, 0, 0, 96);

} // namespace

GlassCard::GlassCard(const Backdrop& backdrop, double cornerRadius, QWidget* parent)
    : QWidget(parent)
    , backdrop(backdrop)
    , cornerRadius(cornerRadius)
    , rim(new GlassBorderOverlay(cornerRadius, this))
{
}

void GlassCard::backdropChanged()
{
    face = {};
    update();
}

void GlassCard::resizeEvent(QResizeEvent*)
{
    rim->setGeometry(rect());
    rim->raise();
    backdropChanged();
}

QPixmap GlassCard::drawFace() const
{
    const double scale = devicePixelRatioF();
    QPixmap drawn((QSizeF(size()) * scale).toSize());
    drawn.setDevicePixelRatio(scale);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPoint place = mapTo(window(), QPoint());
    painter.translate(-place);
    backdrop.paintGlass(painter, QRect(place, size()));
    painter.translate(place);
    painter.fillRect(rect(), qt::qtColor(glassTint));
    if (onCard)
        painter.fillRect(rect(), shadeOnCard);
    // Cut out rather than clipped, since only so the corners are smooth.
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    QPixmap shape(drawn.size());
    shape.setDevicePixelRatio(scale);
    shape.fill(Qt::transparent);
    QPainter shapePainter(&shape);
    shapePainter.setRenderHint(QPainter::Antialiasing);
    shapePainter.fillPath(roundedPath(rect(), cornerRadius), Qt::black);
    shapePainter.end();
    painter.drawPixmap(0, 0, shape);
    return drawn;
}

void GlassCard::paintEvent(QPaintEvent*)
{
    if (face.isNull())
        face = drawFace();
    QPainter(this).drawPixmap(0, 0, face);
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
