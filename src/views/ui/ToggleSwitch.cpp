#include "views/ui/ToggleSwitch.h"

#include "platform/Graphics.h"
#include "platform/qt/graphics/QtColor.h"
#include "views/ui/FocusColor.h"

#include <QKeyEvent>
#include <QPainter>

namespace tallowbay::views {

namespace {

constexpr QSize switchSize(38, 22);
constexpr double knobMargin = 2;
constexpr QColor trackOff(255, 255, 255, 60);

} // namespace

ToggleSwitch::ToggleSwitch(const QString& name, QWidget* parent)
    : QAbstractButton(parent)
{
    setAccessibleName(name);
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(switchSize);
}

void ToggleSwitch::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : 0.4);
    painter.setPen(hasFocus() ? QPen(focusColor, 2) : Qt::NoPen);
    painter.setBrush(isChecked() ? qt::qtColor(systemBlue) : trackOff);
    const QRectF track = QRectF(rect()).adjusted(1, 1, -1, -1);
    painter.drawRoundedRect(track, track.height() / 2, track.height() / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    const double side = track.height() - 2 * knobMargin;
    const double left = isChecked() ? track.right() - knobMargin - side : track.left() + knobMargin;
    painter.drawEllipse(QRectF(left, track.top() + knobMargin, side, side));
}

void ToggleSwitch::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        return click();
    QAbstractButton::keyPressEvent(event);
}

} // namespace tallowbay::views
