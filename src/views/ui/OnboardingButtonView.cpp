#include "views/ui/OnboardingButtonView.h"

#include "platform/qt/graphics/QtColor.h"

#include <QEvent>
#include <QPainter>

namespace tallowbay::views {

OnboardingButtonView::OnboardingButtonView(
    const QString& text, OnboardingHoverButton::Style style, QWidget* parent)
    : QAbstractButton(parent)
    , logic(style)
{
    setText(text);
    setCursor(Qt::PointingHandCursor);
}

void OnboardingButtonView::paintEvent(QPaintEvent*)
{
    const ButtonLook& look = logic.look();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hasBorder = look.border && look.borderWidth > 0;
    painter.setPen(hasBorder ? QPen(qt::qtColor(*look.border), look.borderWidth) : Qt::NoPen);
    painter.setBrush(look.background ? qt::qtColor(*look.background) : Qt::transparent);
    const double inset = look.borderWidth / 2;
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(inset, inset, -inset, -inset), look.cornerRadius,
        look.cornerRadius);
    painter.setPen(qt::qtColor(look.tint));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

void OnboardingButtonView::enterEvent(QEnterEvent*)
{
    logic.mouseEntered();
    update();
}

void OnboardingButtonView::leaveEvent(QEvent*)
{
    logic.mouseExited();
    update();
}

void OnboardingButtonView::changeEvent(QEvent* event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        logic.setEnabled(isEnabled());
}

} // namespace tallowbay::views
