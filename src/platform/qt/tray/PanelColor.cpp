#include "platform/qt/tray/PanelColor.h"

#include "platform/qt/graphics/QtColor.h"

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

#include <algorithm>

namespace tallowbay::qt {

namespace {

constexpr QRgb onLightPanel = 0xff2e2e32;
constexpr QRgb onDarkPanel = 0xfff4f4f6;

bool desktopIsOneOf(std::initializer_list<const char*> known)
{
    const QList<QByteArray> names = qgetenv("XDG_CURRENT_DESKTOP").split(':');
    return std::any_of(known.begin(), known.end(), [&](const char* name) {
        return names.contains(QByteArray(name));
    });
}

// Desktops whose panel is dark whatever the windows are.
bool panelIsAlwaysDark()
{
    return desktopIsOneOf({"GNOME", "Unity", "X-Cinnamon", "Budgie"});
}

int lightnessAt(QScreen& screen, const QPoint& place)
{
    const QPoint onScreen = place - screen.geometry().topLeft();
    const QPixmap pixel = screen.grabWindow(0, onScreen.x(), onScreen.y(), 1, 1);
    return pixel.toImage().pixelColor(0, 0).lightness();
}

// The picture leaves its corners free.
bool panelIsDarkAt(const QRect& icon)
{
    QScreen* found = QGuiApplication::screenAt(icon.center());
    QScreen& screen = found ? *found : *QGuiApplication::primaryScreen();
    int lightness = 0;
    for (const QPoint& corner :
         {icon.topLeft(), icon.topRight(), icon.bottomLeft(), icon.bottomRight()})
        lightness += lightnessAt(screen, corner);
    return lightness < 4 * 128;
}

} // namespace

std::optional<QColor> panelForeground(
    const TrayHost& host, const EmbeddingTray& tray, const QRect& embeddedIcon)
{
    const bool embeds = host.notifierOwner.isEmpty();
    if (const auto color = embeds ? tray.foreground() : std::nullopt)
        return qtColor(*color);
    if (embeds && !embeddedIcon.isEmpty())
        return panelIsDarkAt(embeddedIcon) ? onDarkPanel : onLightPanel;
    if (panelIsAlwaysDark())
        return onDarkPanel;
    return std::nullopt;
}

bool panelColorsNamedSymbols(const TrayHost& host)
{
    return !host.notifierOwner.isEmpty() && desktopIsOneOf({"XFCE"});
}

} // namespace tallowbay::qt
