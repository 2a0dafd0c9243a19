#include "libexec/screencapture/FrozenDesktop.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QScreen>

#include <algorithm>

namespace tallowbay::screencapture {

FrozenDesktop FrozenDesktop::taken(const ScreenScales& scales)
{
    FrozenDesktop desktop;
    desktop.area = QGuiApplication::primaryScreen()->virtualGeometry();
    QImage image(desktop.area.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    int index = 0;
    for (QScreen* screen : QGuiApplication::screens()) {
        const QPixmap content = screen->grabWindow(0);
        if (content.isNull())
            return desktop;
        painter.drawPixmap(screen->geometry().topLeft() - desktop.area.topLeft(), content);
        desktop.screens.push_back(
            {screen->geometry(), scales.of(screen->name(), index++, screen->logicalDotsPerInch())});
    }
    painter.end();
    desktop.image = image;
    return desktop;
}

const FrozenDesktop::Screen& FrozenDesktop::screenAt(QPoint point) const
{
    const auto found = std::ranges::find_if(
        screens, [point](const Screen& screen) { return screen.area.contains(point); });
    return found == screens.end() ? screens.front() : *found;
}

} // namespace tallowbay::screencapture
