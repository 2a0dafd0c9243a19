#pragma once

#include "platform/EmbeddingTray.h"
#include "platform/qt/tray/TrayHosts.h"

#include <QColor>
#include <QRect>

#include <optional>

namespace tallowbay::qt {

// The colour in which a template picture stands out from the panel of this host: what the panel
// itself asks for where it says so; else dark or light as the panel is at the icon's corners, if
// the icon is embedded and its place is known; else light on the desktops whose panels are always
// dark. Empty where nothing tells: beside windows of either kind there are panels of either kind.
std::optional<QColor> panelForeground(
    const TrayHost&, const EmbeddingTray&, const QRect& embeddedIcon = {});

// Whether the panels of this desktop give a symbol that they find by its name their own colour.
bool panelColorsNamedSymbols(const TrayHost&);

} // namespace tallowbay::qt
