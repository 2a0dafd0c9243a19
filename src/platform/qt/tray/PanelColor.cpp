#include "platform/qt/tray/PanelColor.h"

#include "platform/qt/X11Queries.h"
#include "platform/qt/XSettings.h"

#include <QGuiApplication>
#include <QPalette>
#include <QPixmap>
#include <QScreen>

#include <algorithm>
#include <optional>

namespace tallowbay::qt {

namespace {

constexpr QRgb onLightPanel = 0xff2e2e32;
constexpr QRgb onDarkPanel = 0xfff4f4f6;

// The tray protocol's property holds red, green and blue of four colours, the foreground
// first, each as 16 bits.
std::optional<QColor> colorOfTray(std::uint32_t trayWindow)
{
    const auto values = windowProperty(trayWindow, "_NET_SYSTEM_TRAY_COLORS");
    if (values.size() < 3)
        return std::nullopt;
    const auto component = [&](int index) {
        return static_cast<quint16>(std::min<std::uint32_t>(values[index], 0xffff));
    };
    return QColor::fromRgba64(component(0), component(1), component(2));
}

// Desktops whose panel is dark whatever the windows are.
bool panelIsAlwaysDark()
{
    const QList<QByteArray> names = qgetenv("XDG_CURRENT_DESKTOP").split(':');
    return std::any_of(names.begin(), names.end(), [](const QByteArray& name) {
        return name == "GNOME" || name == "Unity" || name == "X-Cinnamon" || name == "Budgie";
    });
}

// GTK's name for the theme of the windows; Qt's palette knows nothing of it.
bool gtkThemeIsDark()
{
    const auto owner = selectionOwner(withScreenNumber("_XSETTINGS_S"));
    const auto theme = textOfXSettings(windowBytes(owner, "_XSETTINGS_SETTINGS"), "Net/ThemeName");
    return QString::fromStdString(theme.value_or(""))
        .contains(QLatin1String("dark"), Qt::CaseInsensitive);
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

bool windowsAreDark()
{
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128 || gtkThemeIsDark();
}

} // namespace

QColor panelForeground(const TrayHost& host, const QRect& embeddedIcon)
{
    const bool embeds = host.notifierOwner.isEmpty();
    if (const auto color = embeds ? colorOfTray(host.selectionOwner) : std::nullopt)
        return *color;
    if (embeds && !embeddedIcon.isEmpty())
        return panelIsDarkAt(embeddedIcon) ? onDarkPanel : onLightPanel;
    return panelIsAlwaysDark() || windowsAreDark() ? onDarkPanel : onLightPanel;
}

} // namespace tallowbay::qt
