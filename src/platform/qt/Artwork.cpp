#include "platform/qt/Artwork.h"

#include <QDir>
#include <QPainter>
#include <QPixmap>

// A static library's resources are linked only if someone names them; outside every namespace, as
// the macro demands.
static void initialiseResources()
{
    Q_INIT_RESOURCE(icons);
}

namespace tallowbay::qt {

namespace {

QStringList files(const QString& name)
{
    initialiseResources();
    const QDir folder(QStringLiteral(":/icons"));
    QStringList paths;
    for (const QString& file : folder.entryList()) // such as "MenubarIcon-16.png"
        if (file.left(file.lastIndexOf(QLatin1Char('-'))) == name)
            paths += folder.filePath(file);
    return paths;
}

QPixmap tint(QPixmap shape, const QColor& color)
{
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), color);
    return shape;
}

} // namespace

bool Artwork::has(const QString& name) const
{
    return !files(name).isEmpty();
}

QIcon Artwork::icon(const QString& name) const
{
    QIcon icon;
    for (const QString& path : files(name))
        icon.addPixmap(QPixmap(path));
    return icon;
}

QIcon Artwork::tinted(const QString& name, const QColor& color) const
{
    QIcon icon;
    for (const QString& path : files(name))
        icon.addPixmap(tint(QPixmap(path), color));
    return icon;
}

} // namespace tallowbay::qt
