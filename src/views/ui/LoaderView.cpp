#include "views/ui/LoaderView.h"

#include "platform/qt/Artwork.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/graphics/QtColor.h"
#include "ui/TallowLoaderPanel.h"
#include "views/ui/RoundedRegion.h"

#include <QCoreApplication>
#include <QEasingCurve>
#include <QElapsedTimer>
#include <QPainter>
#include <QWindow>

namespace tallowbay::views {

namespace {

using Panel = TallowLoaderPanel;

constexpr int shadowReach = 24;
constexpr int shadowDrop = 6;
constexpr QColor iconColor(31, 32, 36);

// As of a toast, which see.
constexpr auto windowFlagsOfLoader = Qt::ToolTip | Qt::FramelessWindowHint
    | Qt::WindowStaysOnTopHint | Qt::X11BypassWindowManagerHint | Qt::WindowTransparentForInput
    | Qt::WindowDoesNotAcceptFocus;

QRectF cardRect(int margin)
{
    return {double(margin), double(margin), Panel::size.width, Panel::size.height};
}

// Rings of one colour, each a little wider: together they fade out.
void paintShadow(QPainter& painter, const QRectF& card)
{
    constexpr int steps = 18;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 3));
    for (int i = 1; i <= steps; ++i) {
        const double reach = (shadowReach - shadowDrop) * double(i) / steps;
        const double radius = Panel::cornerRadius + reach;
        painter.drawRoundedRect(
            card.translated(0, shadowDrop).adjusted(-reach, -reach, reach, reach), radius, radius);
    }
}

} // namespace

LoaderWidget::LoaderWidget(const TallowLoaderPanel& logic, WindowSystem& windows)
    : QWidget(nullptr, windowFlagsOfLoader)
    , windows(windows)
    , composited(windows.composesWindows())
    , margin(composited ? shadowReach : 0)
    , drawing(qt::Artwork().tinted(QString::fromStdString(logic.iconName()), iconColor))
{
    setObjectName(QStringLiteral("loader"));
    setAccessibleName(QStringLiteral("Tallowbay is opening"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    setAttribute(composited ? Qt::WA_TranslucentBackground : Qt::WA_OpaquePaintEvent);
    const QSizeF card(Panel::size.width, Panel::size.height);
    setFixedSize(card.toSize() + QSize(2 * margin, 2 * margin));
    pulse.setStartValue(0.0);
    pulse.setEndValue(1.0);
    pulse.setDuration(static_cast<int>(Panel::pulseCycle.count()));
    pulse.setLoopCount(-1);
    connect(&pulse, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

void LoaderWidget::setAlpha(double wanted)
{
    alpha = wanted;
    if (composited)
        return setWindowOpacity(alpha);
    if (isVisible())
        cutToShape();
}

void LoaderWidget::setOrigin(const Point& origin)
{
    const QRect place = qt::desktopRect({origin, Panel::size});
    move(place.topLeft() - QPoint(margin, margin));
}

// It is made before it is put in its place, which may be on a screen of another scale.
const QPixmap& LoaderWidget::iconOfThisScreen()
{
    const int side = qRound(Panel::iconFrame.size.width);
    if (icon.isNull() || icon.devicePixelRatio() != devicePixelRatioF())
        icon = drawing.pixmap(QSize(side, side), devicePixelRatioF());
    return icon;
}

double LoaderWidget::iconScale() const
{
    const auto [small, large, again] = Panel::pulseScales;
    if (pulse.state() != QVariantAnimation::Running)
        return large;
    const double time = 2 * pulse.currentValue().toDouble();
    static const QEasingCurve ease(QEasingCurve::InOutSine);
    return time < 1 ? small + (large - small) * ease.valueForProgress(time)
                    : large + (again - large) * ease.valueForProgress(time - 1);
}

void LoaderWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF card = cardRect(margin);
    QColor ground = qt::qtColor(Panel::background);
    if (composited) {
        paintShadow(painter, card);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
    } else {
        painter.fillRect(card, Qt::black);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(card, Panel::cornerRadius, Panel::cornerRadius);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.translate(card.center());
    painter.scale(iconScale(), iconScale());
    const QPixmap& shown = iconOfThisScreen();
    const QSizeF size = shown.deviceIndependentSize();
    painter.drawPixmap(QPointF(-size.width() / 2, -size.height() / 2), shown);
}

void LoaderWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!composited)
        cutToShape();
}

// What comes next holds up the main loop, in which the server's word to paint arrives. No window
// manager is asked before this window is there, so that word comes soon.
void LoaderWidget::paintAtOnce()
{
    constexpr int patience = 50; // ms
    QElapsedTimer waiting;
    waiting.start();
    while (!windowHandle()->isExposed() && waiting.elapsed() < patience)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 5);
    repaint();
    windows.composesWindows(); // its answer comes after all that was asked of the server before
}

void LoaderWidget::cutToShape()
{
    const double scale = devicePixelRatioF();
    const PixelSize size{qRound(width() * scale), qRound(height() * scale)};
    windows.cutToShape(
        winId(), alpha > 0 ? roundedRegion(size, Panel::cornerRadius * scale) : PixelRegion());
}

void LoaderView::orderFront()
{
    // The editor comes next, and the loader is not to be seen through its glass.
    backdrop.lookAhead();
    widget.show();
    widget.raise();
    widget.paintAtOnce();
}

void LoaderView::close()
{
    widget.stopPulse();
    widget.close();
}

} // namespace tallowbay::views
