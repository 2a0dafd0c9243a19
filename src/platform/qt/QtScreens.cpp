#include "platform/qt/QtScreens.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace tallowbay::qt {

std::optional<Rect> QtScreens::mainFrame() const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return std::nullopt;
    const QSizeF size = screen->geometry().size();
    return Rect{{0, 0}, {size.width(), size.height()}};
}

std::vector<Rect> QtScreens::frames() const
{
    std::vector<Rect> frames;
    const auto main = mainFrame();
    if (!main)
        return frames;
    const QPointF corner = QGuiApplication::primaryScreen()->geometry().topLeft();
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRectF frame = QRectF(screen->geometry()).translated(-corner);
        frames.push_back(
            {{frame.x(), main->size.height - frame.y() - frame.height()},
             {frame.width(), frame.height()}});
    }
    return frames;
}

std::optional<Point> QtScreens::pointer() const
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return std::nullopt;
    const QPointF mouse = QCursor::pos() - screen->geometry().topLeft();
    // A pixel of the screen is the square below its upper edge.
    return Point{mouse.x(), screen->geometry().height() - mouse.y() - 1};
}

QRect desktopRect(const Rect& frame)
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect main = screen ? screen->geometry() : QRect(0, 0, 0, qRound(frame.maxY()));
    const QRectF flipped(
        main.left() + frame.minX(), main.top() + main.height() - frame.maxY(),
        frame.maxX() - frame.minX(), frame.maxY() - frame.minY());
    return {flipped.topLeft().toPoint(), flipped.size().toSize()};
}

// Screens keep their places among the server's pixels; each scales what is on it from its corner.
PixelRect desktopPixels(const QRect& rect)
{
    const QScreen* screen = QGuiApplication::screenAt(rect.center());
    if (!screen)
        return {};
    const QPoint origin = screen->geometry().topLeft();
    const double scale = screen->devicePixelRatio();
    const QPoint corner = ((rect.topLeft() - origin) * scale) + origin;
    return {corner.x(), corner.y(), qRound(rect.width() * scale), qRound(rect.height() * scale)};
}

} // namespace tallowbay::qt
