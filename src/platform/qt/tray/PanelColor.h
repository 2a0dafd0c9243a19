#pragma once

#include "platform/EmbeddingTray.h"
#include "platform/qt/tray/TrayHosts.h"

#include <QColor>
#include <QRect>

namespace tallowbay::qt {

// The colour in which a template picture stands out from the panel of this host: what the panel
// itself asks for where it says so; else dark or light as the panel is at the icon's corners, if
// the icon is embedded and its place is known; else as the desktop's windows are.
QColor panelForeground(
    const TrayHost&, const EmbeddingTray&, const WindowSystem&, const QRect& embeddedIcon = {});

} // namespace tallowbay::qt
