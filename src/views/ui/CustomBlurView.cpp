#include "views/ui/CustomBlurView.h"

#include <QEvent>
#include <QPainter>

#include <utility>

namespace tallowbay::views {

CustomBlurView::CustomBlurView(const Backdrop& backdrop, QWidget* parent)
    : QWidget(parent)
    , backdrop(backdrop)
{
}

void CustomBlurView::setBlurRadius(double points)
{
    if (std::exchange(deviation, points) != points)
        backdropChanged();
    blurAlikeWithin();
}

void CustomBlurView::blurAlikeWithin()
{
    for (QWidget* part : findChildren<QWidget*>())
        if (auto* const view = dynamic_cast<CustomBlurView*>(part))
            view->setBlurRadius(deviation);
}

void CustomBlurView::backdropChanged()
{
    face = {};
    update();
}

bool CustomBlurView::event(QEvent* event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::ParentChange)
        blurAlikeWithin();
    return QWidget::event(event);
}

void CustomBlurView::resizeEvent(QResizeEvent*)
{
    blurAlikeWithin();
    backdropChanged();
}

QPixmap CustomBlurView::drawFace() const
{
    const double scale = devicePixelRatioF();
    QPixmap drawn((QSizeF(size()) * scale).toSize());
    drawn.setDevicePixelRatio(scale);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPoint place = mapTo(window(), QPoint());
    painter.translate(-place);
    backdrop.paintGlass(painter, QRect(place, size()), deviation);
    painter.translate(place);
    drawOnGround(painter);
    return drawn;
}

void CustomBlurView::paintEvent(QPaintEvent*)
{
    if (face.isNull())
        face = drawFace();
    QPainter(this).drawPixmap(0, 0, face);
}

} // namespace tallowbay::views
