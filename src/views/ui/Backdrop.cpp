#include "views/ui/Backdrop.h"

#include "platform/qt/QtScreens.h"
#include "platform/qt/graphics/BitmapImage.h"
#include "views/ui/BoxBlur.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <utility>

namespace tallowbay::views {

namespace {

constexpr int reduction = 4; // points; no finer detail outlives a blur

// Black, under the white tint of a card; less of it where the window has dimmed the desktop
// already.
constexpr double materialOverPicture = 0.72;
constexpr double materialOverBlur = 0.65;
constexpr QColor denseMaterial(22, 23, 27, 232);
constexpr QColor unknownDesktop(30, 32, 38);

QImage pictureOf(const WindowSystem& windows, QScreen& screen)
{
    if (auto picture = windows.picture(qt::desktopPixels(screen.geometry())))
        return qt::opaqueImage(std::move(*picture));
    QImage image = screen.grabWindow(0).toImage();
    if (!image.isNull())
        image.convertTo(QImage::Format_RGB32); // it is opaque, whatever its format says
    image.setDevicePixelRatio(1);
    return image;
}

QImage withoutDetail(const QImage& picture, const QSize& points)
{
    const QSize size = (points / reduction).expandedTo({1, 1});
    return picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// Far faster than to stretch it by nothing.
void drawPixelForPixel(QPainter& painter, const QRect& part, const QImage& picture)
{
    const QTransform toPixels = painter.deviceTransform();
    const double scale = painter.device()->devicePixelRatioF();
    const QRect source(part.topLeft() * scale, part.size() * scale);
    painter.save();
    painter.setWorldTransform((painter.worldTransform().inverted() * toPixels).inverted());
    painter.drawImage(toPixels.map(part.topLeft()), picture, source);
    painter.restore();
}

} // namespace

void Backdrop::look()
{
    if (std::exchange(lookedAhead, false))
        return;
    forget();
    composed = windows.composesWindows();
    blurred = composed && windows.blursBehind();
    QScreen* const screen = QGuiApplication::primaryScreen();
    if (blurred || !screen)
        return;
    size = screen->size();
    QImage picture = pictureOf(windows, *screen);
    if (picture.isNull())
        return;
    smallDesktop = withoutDetail(picture, size);
    if (!composed)
        desktop = std::move(picture);
}

void Backdrop::lookAhead()
{
    lookedAhead = false;
    look();
    lookedAhead = true;
}

bool Backdrop::compositionChanged()
{
    const bool composes = windows.composesWindows();
    if (std::exchange(composed, composes) == composes)
        return false;
    blurred = composed && windows.blursBehind();
    return true;
}

void Backdrop::forget()
{
    desktop = {};
    smallDesktop = {};
    lastBlurred = {};
}

QRectF Backdrop::sourceOf(const QRect& part, const QSize& picture) const
{
    const double x = double(picture.width()) / size.width();
    const double y = double(picture.height()) / size.height();
    return {part.x() * x, part.y() * y, part.width() * x, part.height() * y};
}

void Backdrop::paint(QPainter& painter, const QRect& part) const
{
    if (composed)
        return;
    if (desktop.isNull())
        return painter.fillRect(part, unknownDesktop);
    const double scale = painter.device()->devicePixelRatioF();
    if (scale == qRound(scale) && size * scale == desktop.size())
        drawPixelForPixel(painter, part, desktop);
    else
        painter.drawImage(QRectF(part), desktop, sourceOf(part, desktop.size()));
}

const QImage& Backdrop::blurredDesktop(double blurRadius) const
{
    const bool isOther = std::exchange(lastBlurRadius, blurRadius) != blurRadius;
    if (isOther || lastBlurred.isNull())
        lastBlurred = blurredImage(smallDesktop, blurRadius / reduction);
    return lastBlurred;
}

void Backdrop::paintGlass(QPainter& painter, const QRect& part, double blurRadius) const
{
    if (blurred)
        return painter.fillRect(part, QColor::fromRgbF(0, 0, 0, materialOverBlur));
    if (smallDesktop.isNull())
        return painter.fillRect(part, denseMaterial);
    const QImage& picture = blurredDesktop(blurRadius);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(part), picture, sourceOf(part, picture.size()));
    painter.fillRect(part, QColor::fromRgbF(0, 0, 0, materialOverPicture));
}

} // namespace tallowbay::views
