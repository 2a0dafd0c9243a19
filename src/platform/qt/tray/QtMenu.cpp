#include "platform/qt/tray/QtMenu.h"

#include <QMenu>
#include <QPainter>

namespace tallowbay::qt {

namespace {

// A panel shows the menu in its own colours, light or dark, and tells nobody which.
constexpr QColor onAnyGround(0x87, 0x87, 0x8a);

// Two strokes through the square's middle, as wide as the text beside them.
QPixmap crossPixmap(int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(onAnyGround, size / 11.0, Qt::SolidLine, Qt::RoundCap));
    const double inset = size * 0.25;
    const QRectF square(inset, inset, size - 2 * inset, size - 2 * inset);
    painter.drawLine(square.topLeft(), square.bottomRight());
    painter.drawLine(square.topRight(), square.bottomLeft());
    return pixmap;
}

QIcon symbolIcon(const std::string& symbol)
{
    QIcon icon;
    if (symbol == "xmark")
        for (int size : {16, 22, 32, 48})
            icon.addPixmap(crossPixmap(size));
    return icon;
}

// Qt takes a single one for the mark of a key.
QString withPlainAmpersands(const std::string& title)
{
    return QString::fromStdString(title).replace(QLatin1Char('&'), QLatin1String("&&"));
}

void addRow(QMenu& menu, const MenuItem& item)
{
    if (item.separator) {
        menu.addSeparator();
        return;
    }
    QAction* action = menu.addAction(symbolIcon(item.symbol), withPlainAmpersands(item.title));
    action->setEnabled(static_cast<bool>(item.action));
    if (!item.keyEquivalent.empty()) {
        const auto key = QString::fromStdString(item.keyEquivalent).toUpper();
        action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + key));
        action->setShortcutVisibleInContextMenu(true);
    }
    if (item.action)
        QObject::connect(action, &QAction::triggered, action, item.action);
}

} // namespace

std::unique_ptr<QMenu> makeMenu(const Menu& rows)
{
    auto menu = std::make_unique<QMenu>();
    for (const MenuItem& item : rows)
        addRow(*menu, item);
    return menu;
}

} // namespace tallowbay::qt
