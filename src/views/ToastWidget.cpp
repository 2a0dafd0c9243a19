#include "views/ToastWidget.h"

#include "platform/qt/QtScreens.h"
#include "platform/qt/graphics/GraphicsFonts.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>

#include <algorithm>

namespace tallowbay::views {

namespace {

// The dark material: thin where what lies below is blurred, dense where it would disturb the text.
constexpr QColor materialOverBlur(24, 24, 28, 199);
constexpr QColor materialOverPlain(24, 24, 28, 224);
constexpr QColor rimColor(255, 255, 255, 28);

// A tooltip stays on top and bypasses the window manager in any case. Where that is not said, Qt
// makes the window anew when it is shown, and the new one takes clicks.
constexpr auto windowFlagsOfToast = Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
    | Qt::X11BypassWindowManagerHint | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus;

// Narrower than the margins that a toast's width includes: rounding must not cost a character.
constexpr int leastMargin = 16;

QFont textFontFor(const Font& font)
{
    QFont result = qt::interfaceFont(font);
    // Coloured fringes are wrong over a background that is not known beforehand.
    result.setStyleStrategy(
        QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return result;
}

QImage blurred(const QImage& image, double scale)
{
    const int step = std::max(1, qRound(12 * scale));
    const QSize small((image.width() + step - 1) / step, (image.height() + step - 1) / step);
    return image.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

ToastWidget::ToastWidget(const ToastContent& content, WindowSystem& windows)
    : QWidget(nullptr, windowFlagsOfToast)
    , windows(windows)
    , message(QString::fromStdString(content.message))
    , textFont(textFontFor(content.font))
    , cornerRadius(content.cornerRadius)
    , composited(windows.composesWindows())
    , blursBehind(composited && windows.blursBehind())
{
    setObjectName(QStringLiteral("toast"));
    setAccessibleName(message);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    setAttribute(composited ? Qt::WA_TranslucentBackground : Qt::WA_OpaquePaintEvent);
    setGeometry(qt::desktopRect(content.frame));
}

void ToastWidget::captureBackdrop(const std::vector<const ToastWidget*>& olderToasts)
{
    QScreen* screen = QGuiApplication::primaryScreen();
    if (composited || !screen)
        return;
    const QRect area = geometry().translated(-screen->geometry().topLeft());
    backdrop = screen->grabWindow(0, area.x(), area.y(), area.width(), area.height()).toImage();
    QPainter painter(&backdrop);
    for (const ToastWidget* older : olderToasts)
        painter.drawImage(
            QRectF(older->geometry().translated(-geometry().topLeft())), older->backdrop);
    painter.end();
    blurredBackdrop = blurred(backdrop, backdrop.devicePixelRatio());
}

void ToastWidget::setAlpha(double wanted)
{
    alpha = wanted;
    if (composited)
        setWindowOpacity(alpha);
    else
        update();
}

void ToastWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (!composited) {
        painter.fillRect(rect(), Qt::black);
        painter.drawImage(QRectF(rect()), backdrop);
        painter.setOpacity(alpha);
    }
    paintToast(painter);
    paintText(painter);
}

void ToastWidget::paintToast(QPainter& painter) const
{
    painter.setPen(Qt::NoPen);
    if (!blurredBackdrop.isNull()) {
        QBrush glass(blurredBackdrop);
        const double scale = width() / double(blurredBackdrop.width());
        glass.setTransform(QTransform::fromScale(scale, scale));
        painter.setBrush(glass);
        painter.drawPath(shape());
    }
    const bool thin = blursBehind || !composited;
    painter.setBrush(thin ? materialOverBlur : materialOverPlain);
    painter.drawPath(shape());
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(rimColor, 1));
    const QRectF inside = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(inside, cornerRadius - 0.5, cornerRadius - 0.5);
}

void ToastWidget::paintText(QPainter& painter) const
{
    const QRect line = rect().adjusted(leastMargin, 0, -leastMargin, 0);
    painter.setFont(textFont);
    painter.setPen(Qt::white);
    const QString singleLine = QString(message).replace(QLatin1Char('\n'), QLatin1Char(' '));
    const QString fitting =
        QFontMetricsF(textFont).elidedText(singleLine, Qt::ElideRight, line.width());
    painter.drawText(line, int(Qt::AlignCenter) | Qt::TextSingleLine, fitting);
}

void ToastWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (blursBehind)
        askForBlurBehind();
}

void ToastWidget::askForBlurBehind()
{
    const auto toPixels = QTransform::fromScale(devicePixelRatioF(), devicePixelRatioF());
    PixelRegion region;
    for (const QRect& part : QRegion(shape().toFillPolygon(toPixels).toPolygon()))
        region.push_back({part.x(), part.y(), part.width(), part.height()});
    windows.blurBehind(winId(), region);
}

QPainterPath ToastWidget::shape() const
{
    QPainterPath path;
    path.addRoundedRect(rect(), cornerRadius, cornerRadius);
    return path;
}

} // namespace tallowbay::views
