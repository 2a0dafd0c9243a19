#include "views/editor/strip/OverlayScroller.h"

#include <QMouseEvent>
#include <QPainter>

namespace tallowbay::views {

namespace {

constexpr double margin = 8; // at either end
constexpr double thickness = 6;
constexpr double shortest = 48;
constexpr int restMilliseconds = 900;
constexpr int fadeMilliseconds = 200;

} // namespace

OverlayScroller::OverlayScroller(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("stripScroller"));
    rest.setSingleShot(true);
    rest.setInterval(restMilliseconds);
    connect(&rest, &QTimer::timeout, this, [this] { fadeTo(0); });
    fade.setDuration(fadeMilliseconds);
    connect(&fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        opacity = value.toDouble();
        update();
    });
}

void OverlayScroller::setView(double newOffset, double newVisible, double newWhole)
{
    offset = newOffset;
    visible = newVisible;
    whole = newWhole;
    setEnabled(isNeeded());
    update();
}

void OverlayScroller::flash()
{
    if (!isNeeded() || !isVisible())
        return;
    fadeTo(1);
    if (!hovered && !dragging)
        rest.start();
}

void OverlayScroller::fadeTo(double to)
{
    rest.stop();
    if (fade.state() == QVariantAnimation::Running && fade.endValue().toDouble() == to)
        return;
    fade.stop();
    fade.setStartValue(opacity);
    fade.setEndValue(to);
    if (opacity != to)
        fade.start();
}

QRectF OverlayScroller::knob() const
{
    const double way = width() - 2 * margin;
    const double length = std::max(shortest, way * visible / whole);
    const double left = margin + (way - length) * offset / std::max(1.0, whole - visible);
    return {left, (height() - thickness) / 2, length, thickness};
}

void OverlayScroller::paintEvent(QPaintEvent*)
{
    if (!isNeeded() || opacity == 0)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacity);
    painter.setPen(QColor(0, 0, 0, 70));
    painter.setBrush(QColor(255, 255, 255, hovered || dragging ? 190 : 130));
    painter.drawRoundedRect(knob(), thickness / 2, thickness / 2);
}

void OverlayScroller::enterEvent(QEnterEvent*)
{
    hovered = true;
    if (isNeeded())
        fadeTo(1);
}

void OverlayScroller::leaveEvent(QEvent*)
{
    hovered = false;
    flash();
}

void OverlayScroller::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !isNeeded())
        return event->ignore();
    dragging = true;
    const QRectF now = knob();
    const double x = event->position().x();
    // Beside the knob: its middle comes here.
    grabbedAt = x >= now.left() && x <= now.right() ? x - now.left() : now.width() / 2;
    mouseMoveEvent(event);
}

void OverlayScroller::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton)) // let go where nobody told us
        endDrag();
    if (!dragging || !onScrolled)
        return;
    const double way = width() - 2 * margin - knob().width();
    const double part = (event->position().x() - grabbedAt - margin) / std::max(1.0, way);
    onScrolled(part * (whole - visible));
}

void OverlayScroller::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        endDrag();
}

bool OverlayScroller::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate)
        endDrag();
    return QWidget::event(event);
}

void OverlayScroller::endDrag()
{
    if (std::exchange(dragging, false))
        flash();
}

void OverlayScroller::hideEvent(QHideEvent*)
{
    rest.stop();
    fade.stop();
    opacity = 0;
    dragging = hovered = false;
}

} // namespace tallowbay::views
