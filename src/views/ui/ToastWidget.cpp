#include "views/ui/ToastWidget.h"

#include "platform/qt/QtScreens.h"
#include "platform/qt/graphics/GraphicsFonts.h"
#include "views/ui/RoundedRegion.h"

#include <QPainter>

#include <cmath>

namespace tallowbay::views {

namespace {

// The dark material: thin where what lies below is blurred, dense where it would disturb the text.
constexpr QColor toastOverBlur(24, 24, 28, 199);
constexpr QColor toastOverPlain(24, 24, 28, 224);
constexpr QColor opaqueMaterial(30, 30, 34);
constexpr QColor rimColor(255, 255, 255, 28);

// A tooltip stays on top and bypasses the window manager in any case. Where that is not said, Qt
// makes the window anew when it is shown, and the new one takes clicks.
constexpr auto windowFlagsOfToast = Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
    | Qt::X11BypassWindowManagerHint | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus;

// Narrower than the margins that a toast's width includes: rounding must not cost a character.
constexpr int leastMargin = 16;

// Less of a fade is not seen in a frame, and costs as much as any.
constexpr double leastStep = 0.03;

QFont textFontFor(const Font& font)
{
    QFont result = qt::interfaceFont(font);
    // Coloured fringes are wrong over a background that is not known beforehand.
    result.setStyleStrategy(
        QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return result;
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

void ToastWidget::setAlpha(double wanted)
{
    alpha = wanted;
    const bool isLast = wanted == 0 || wanted == 1;
    if (!isLast && std::abs(alpha - shownAlpha) < leastStep)
        return;
    const bool appears = (shownAlpha > 0) != (alpha > 0);
    shownAlpha = alpha;
    if (composited)
        return setWindowOpacity(alpha);
    if (appears && isVisible())
        cutToShape();
    update(textPlace());
}

void ToastWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintMaterial(painter);
    if (!composited)
        painter.setOpacity(shownAlpha);
    paintText(painter);
}

void ToastWidget::paintMaterial(QPainter& painter) const
{
    painter.setPen(Qt::NoPen);
    if (composited) {
        painter.setBrush(blursBehind ? toastOverBlur : toastOverPlain);
        painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
    } else {
        painter.fillRect(rect(), opaqueMaterial);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(rimColor, 1));
    const QRectF inside = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(inside, cornerRadius - 0.5, cornerRadius - 0.5);
}

QRect ToastWidget::textPlace() const
{
    return rect().adjusted(leastMargin, 0, -leastMargin, 0);
}

// Written once: every frame of a fade shows it anew.
void ToastWidget::paintText(QPainter& painter)
{
    if (text.isNull() || text.devicePixelRatio() != devicePixelRatioF())
        text = writtenText();
    painter.drawPixmap(textPlace().topLeft(), text);
}

QPixmap ToastWidget::writtenText() const
{
    const double scale = devicePixelRatioF();
    QPixmap picture((QSizeF(textPlace().size()) * scale).toSize());
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    const QRect line(QPoint(), textPlace().size());
    QPainter painter(&picture);
    painter.setFont(textFont);
    painter.setPen(Qt::white);
    const QString fitting =
        QFontMetricsF(textFont).elidedText(message, Qt::ElideRight, line.width());
    painter.drawText(line, Qt::AlignCenter, fitting);
    return picture;
}

// The server knows the window by now, and shows it after this.
void ToastWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (blursBehind)
        windows.blurBehind(winId(), shape());
    if (!composited)
        cutToShape();
}

void ToastWidget::cutToShape()
{
    windows.cutToShape(winId(), shownAlpha > 0 ? shape() : PixelRegion());
}

PixelRegion ToastWidget::shape() const
{
    const double scale = devicePixelRatioF();
    return roundedRegion({qRound(width() * scale), qRound(height() * scale)}, cornerRadius * scale);
}

} // namespace tallowbay::views
