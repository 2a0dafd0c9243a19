#include "views/ui/Symbol.h"

#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

// A static library's resources are linked only if someone names them; outside every namespace, as
// the macro demands.
static void initialiseResources()
{
    Q_INIT_RESOURCE(symbols);
}

namespace tallowbay::views {

namespace {

constexpr double sidePerTextSize = 1.2;

QPixmap render(const QString& name, int sidePixels, const QColor& color)
{
    initialiseResources();
    QSvgRenderer drawing(QStringLiteral(":/symbols/%1.svg").arg(name));
    if (!drawing.isValid())
        return {};
    QPixmap picture(sidePixels, sidePixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    return picture;
}

} // namespace

QPixmap symbol(const QString& name, double textSize, const QColor& color, double pixelsPerPoint)
{
    const int sidePixels = qRound(sidePerTextSize * textSize * pixelsPerPoint);
    const QString key = QStringLiteral("symbol/%1/%2/%3")
                            .arg(name, QString::number(sidePixels), color.name(QColor::HexArgb));
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        picture = render(name, sidePixels, color);
        QPixmapCache::insert(key, picture);
    }
    picture.setDevicePixelRatio(pixelsPerPoint);
    return picture;
}

} // namespace tallowbay::views
