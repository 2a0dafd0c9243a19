#include "views/ui/HoverView.h"

#include "platform/qt/graphics/QtColor.h"

#include <QPainter>

namespace tallowbay::views {

HoverView::HoverView(QWidget* parent, const HoverLook& look)
    : QWidget(parent)
    , look(look)
{
    setCursor(Qt::PointingHandCursor);
}

void HoverView::paintEvent(QPaintEvent*)
{
    const auto light = look.background(hovered);
    if (!light)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(qt::qtColor(*light));
    painter.drawRoundedRect(rect(), look.cornerRadius, look.cornerRadius);
}

void HoverView::enterEvent(QEnterEvent*)
{
    setHovered(isActiveWindow());
}

void HoverView::leaveEvent(QEvent*)
{
    setHovered(false);
}

bool HoverView::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        setHovered(underMouse());
    else if (event->type() == QEvent::WindowDeactivate)
        setHovered(false);
    return QWidget::event(event);
}

void HoverView::setHovered(bool is)
{
    hovered = is;
    update();
}

} // namespace tallowbay::views
