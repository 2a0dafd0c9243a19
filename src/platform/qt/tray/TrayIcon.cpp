#include "platform/qt/tray/TrayIcon.h"

#include "platform/qt/QtScreens.h"
#include "platform/qt/tray/PanelColor.h"
#include "platform/qt/tray/TrayPicture.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

namespace tallowbay::qt {

namespace {

using namespace std::chrono_literals;

// Panels change colour when the desktop's theme does, and tell nobody. The first look comes soon,
// when an embedded icon has got its place.
constexpr auto recolorFirst = 300ms;
constexpr auto recolorEvery = 5s;

} // namespace

TrayIcon::TrayIcon(StatusButton button, QMenu& menu, const EmbeddingTray& embeddingTray)
    : button(std::move(button))
    , menu(menu)
    , embeddingTray(embeddingTray)
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
    color = panelForeground(host, embeddingTray);
    icon = std::make_unique<QSystemTrayIcon>(
        trayPicture(button, color, panelColorsNamedSymbols(host)));
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
    const auto wanted = panelForeground(host, embeddingTray, place);
    if (wanted == color)
        return;
    color = wanted;
    icon->setIcon(trayPicture(button, color, panelColorsNamedSymbols(host)));
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

} // namespace tallowbay::qt
