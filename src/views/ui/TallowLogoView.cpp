#include "views/ui/TallowLogoView.h"

#include "platform/qt/graphics/QtGraphicsContext.h"

#include <QCursor>
#include <QPainter>
#include <QRandomGenerator>

namespace tallowbay::views {

TallowLogoView::TallowLogoView(Image icon, QWidget* parent)
    : QWidget(parent)
    , logo(
          std::chrono::steady_clock::now(),
          [] { return QRandomGenerator::global()->generateDouble(); }, std::move(icon))
{
    setAccessibleName(QStringLiteral("Tallowbay"));
    animation.setTimerType(Qt::PreciseTimer);
    animation.setInterval(std::chrono::round<std::chrono::milliseconds>(TallowLogo::tickInterval));
    connect(&animation, &QTimer::timeout, this, [this] { tick(); });
}

void TallowLogoView::tick()
{
    const QPointF mouse = mapFromGlobal(QPointF(QCursor::pos()));
    logo.tick(
        std::chrono::steady_clock::now(), {double(width()), double(height())},
        Point{mouse.x(), height() - mouse.y()});
    update();
}

void TallowLogoView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    qt::QtGraphicsContext context(painter, height(), fonts, scaledImages);
    logo.draw(context, {double(width()), double(height())});
}

void TallowLogoView::showEvent(QShowEvent*)
{
    animation.start();
}

void TallowLogoView::hideEvent(QHideEvent*)
{
    animation.stop();
}

} // namespace tallowbay::views
