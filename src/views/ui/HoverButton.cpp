#include "views/ui/HoverButton.h"

#include "platform/qt/graphics/QtColor.h"
#include "views/ui/FocusColor.h"
#include "views/ui/Symbol.h"

#include <QKeyEvent>
#include <QPainter>

namespace tallowbay::views {

namespace {

bool presses(int key)
{
    return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

HoverButton::HoverButton(const QString& name, const HoverLook& look, QWidget* parent)
    : QAbstractButton(parent)
    , look(look)
{
    setObjectName(name);
    setAccessibleName(name);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus); // a click leaves the keyboard to the canvas
}

void HoverButton::setSymbol(const QString& name, double textSize)
{
    symbolName = name;
    symbolSize = textSize;
    update();
}

void HoverButton::setTint(const QColor& color)
{
    tint = color;
    update();
}

void HoverButton::setBackground(const QColor& color)
{
    background = color;
    update();
}

void HoverButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto light = look.background(hovered);
    const QColor ground = light ? qt::qtColor(*light) : background;
    if (!litFromAbove)
        paintLight(painter, ground);
    paintContent(painter);
    if (litFromAbove)
        paintLight(painter, ground);
    if (hasFocus())
        paintFocus(painter);
}

void HoverButton::paintContent(QPainter& painter)
{
    const QPixmap picture = symbol(symbolName, symbolSize, tint, devicePixelRatioF());
    const QSizeF size = picture.deviceIndependentSize();
    painter.drawPixmap(
        QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), picture);
}

void HoverButton::paintLight(QPainter& painter, const QColor& color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect(), look.cornerRadius, look.cornerRadius);
}

void HoverButton::paintFocus(QPainter& painter)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(focusColor, 2));
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(1, 1, -1, -1), look.cornerRadius - 1, look.cornerRadius - 1);
}

void HoverButton::enterEvent(QEnterEvent*)
{
    setHovered(isActiveWindow());
}

void HoverButton::leaveEvent(QEvent*)
{
    setHovered(false);
}

bool HoverButton::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate)
        setHovered(underMouse());
    else if (event->type() == QEvent::WindowDeactivate)
        setHovered(false);
    return QAbstractButton::event(event);
}

void HoverButton::setHovered(bool is)
{
    hovered = is;
    update();
}

// The base class would take the arrows for a walk among its neighbours.
void HoverButton::keyPressEvent(QKeyEvent* event)
{
    if (!presses(event->key()) || event->isAutoRepeat())
        return event->ignore();
    click(); // may take this button away
}

} // namespace tallowbay::views
