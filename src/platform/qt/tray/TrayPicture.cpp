#include "platform/qt/tray/TrayPicture.h"

#include "platform/qt/Artwork.h"
#include "platform/qt/graphics/GraphicsFonts.h"

#include <QIconEngine>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace tallowbay::qt {

namespace {

// The sizes in pixels that panels give their icons.
constexpr int panelSizes[] = {16, 18, 20, 22, 24, 26, 28, 30, 32, 36, 40, 44, 48, 64, 96};

// A picture drawn for a smaller size, with a margin: crisper than one scaled to fit.
QPixmap centered(const QPixmap& picture, int size)
{
    QPixmap canvas(size, size);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.drawPixmap((size - picture.width()) / 2, (size - picture.height()) / 2, picture);
    return canvas;
}

QIcon fittedToPanels(const QIcon& drawn)
{
    QIcon icon;
    for (int size : panelSizes)
        icon.addPixmap(centered(drawn.pixmap(QSize(size, size), 1.0), size));
    return icon;
}

// What shows on any ground: light, with a dark rim.
constexpr QColor lightSymbol(0xf4, 0xf4, 0xf6);
constexpr QColor darkRim(0x24, 0x24, 0x28);

// By which themes and panels know the symbol.
const QString symbolName = QStringLiteral("com.quarnel.tallowbay-symbolic");

QPixmap titlePixmap(const QString& title, const QColor& color, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setFont(interfaceFont({size * 0.6, FontWeight::semibold}));
    painter.setPen(color);
    painter.drawText(pixmap.rect(), Qt::AlignCenter, title);
    return pixmap;
}

QIcon symbol(const StatusButton& button, const QColor& tint)
{
    const QIcon drawn = Artwork().tinted(QString::fromStdString(button.imageName), tint);
    if (!drawn.isNull())
        return fittedToPanels(drawn);
    QIcon title;
    for (int size : panelSizes)
        title.addPixmap(titlePixmap(QString::fromStdString(button.title), tint, size));
    return title;
}

// The same picture in two colours, one behind the other all around.
QIcon rimmed(const QIcon& inside, const QIcon& rim)
{
    QIcon icon;
    for (const QSize& size : inside.availableSizes()) {
        QPixmap canvas(size);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        const int width = std::max(1, size.height() / 22);
        for (const QPoint& side : {QPoint(1, 0), {-1, 0}, {0, 1}, {0, -1}})
            painter.drawPixmap(side * width, rim.pixmap(size, 1.0));
        painter.drawPixmap(0, 0, inside.pixmap(size, 1.0));
        icon.addPixmap(canvas);
    }
    return icon;
}

// Pictures that a panel may also look up by name, to draw them in its own colour.
class NamedPictures final : public QIconEngine {
public:
    NamedPictures(QIcon pictures, QString name)
        : pictures(std::move(pictures))
        , name(std::move(name))
    {
    }

    QString iconName() override { return name; }
    QIconEngine* clone() const override { return new NamedPictures(pictures, name); }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override
    {
        return pictures.availableSizes(mode, state);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return pictures.pixmap(size, 1.0, mode, state);
    }
    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State state) override
    {
        pictures.paint(painter, place, Qt::AlignCenter, mode, state);
    }

private:
    const QIcon pictures;
    const QString name;
};

} // namespace

QIcon trayPicture(const StatusButton& button, const std::optional<QColor>& color, bool withName)
{
    const QIcon drawn = color ? symbol(button, *color)
                              : rimmed(symbol(button, lightSymbol), symbol(button, darkRim));
    return withName ? QIcon(new NamedPictures(drawn, symbolName)) : drawn; // which owns it
}

} // namespace tallowbay::qt
