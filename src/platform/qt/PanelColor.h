#pragma once

#include "platform/qt/TrayHosts.h"

#include <QColor>

namespace tallowbay::qt {

// The colour in which a template picture stands out from the panel of this host: what the panel
// itself asks for where it says so, else dark or light as the desktop's windows are.
QColor panelForeground(const TrayHost&);

} // namespace tallowbay::qt
