#include "platform/qt/tray/TrayIcon.h"

#include "platform/qt/Artwork.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/graphics/GraphicsFonts.h"
#include "platform/qt/tray/PanelColor.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>

namespace tallowbay::qt {

namespace {

using namespace std::chrono_literals;

// Panels change colour when the desktop's theme does, and tell nobody. The first look comes soon,
// when an embedded icon has got its place.
constexpr auto recolorFirst = 300ms;
constexpr auto recolorEvery = 5s;

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

} // namespace

TrayIcon::TrayIcon(
    StatusButton button, QMenu& menu, const EmbeddingTray& embeddingTray,
    const WindowSystem& windows)
    : button(std::move(button))
    , menu(menu)
    , embeddingTray(embeddingTray)
    , windows(windows)
    , hosts(embeddingTray, [this](const TrayHost& found) { moveTo(found); })
{
    recolorTimer.callOnTimeout([this] { recolor(); });
}

// Always a fresh icon: one that was made before its host never appears in it.
void TrayIcon::moveTo(const TrayHost& found)
{
    host = found;
    icon.reset();
    recolorTimer.stop();
    if (!host.present())
        return;
    color = panelForeground(host, embeddingTray, windows);
    icon = std::make_unique<QSystemTrayIcon>(picture(color));
    icon->setToolTip(QGuiApplication::applicationDisplayName());
    icon->setContextMenu(&menu);
    QObject::connect(
        icon.get(), &QSystemTrayIcon::activated, &menu,
        [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger)
                menu.popup(menuPlace());
            else if (reason == QSystemTrayIcon::MiddleClick && button.onMiddleClick)
                QTimer::singleShot(0, &menu, button.onMiddleClick); // it may destroy this icon
        });
    icon->show();
    recolorTimer.start(recolorFirst);
}

void TrayIcon::recolor()
{
    recolorTimer.setInterval(recolorEvery);
    // What lies over the panel, such as a film or the dimmed picture of a screen in which the user
    // selects something, says nothing of the panel's colour.
    const QRect place = icon->geometry();
    if (!place.isEmpty() && !embeddingTray.showsIconAt(desktopPixels(place)))
        return;
    const QColor wanted = panelForeground(host, embeddingTray, windows, place);
    if (wanted == color)
        return;
    color = wanted;
    icon->setIcon(picture(color));
}

// Beside the icon, away from the screen's edge; hosts on the message bus do not tell where it is.
QPoint TrayIcon::menuPlace() const
{
    const QRect place = icon->geometry();
    const QScreen* screen = QGuiApplication::screenAt(place.center());
    if (place.isEmpty() || !screen)
        return QCursor::pos();
    const bool atTop = place.center().y() < screen->geometry().center().y();
    return atTop ? QPoint(place.left(), place.bottom() + 1)
                 : QPoint(place.left(), place.top() - menu.sizeHint().height());
}

QIcon TrayIcon::picture(const QColor& tint) const
{
    const QIcon drawn = Artwork().tinted(QString::fromStdString(button.imageName), tint);
    if (!drawn.isNull())
        return fittedToPanels(drawn);
    QIcon title;
    for (int size : panelSizes)
        title.addPixmap(titlePixmap(QString::fromStdString(button.title), tint, size));
    return title;
}

} // namespace tallowbay::qt
