#pragma once

#include "platform/StatusBar.h"

#include <QColor>
#include <QIcon>

#include <optional>

namespace tallowbay::qt {

// The button's picture, or its title where there is none, in the sizes that panels use. In this
// colour; without one light with a dark rim, which shows on any ground. With its name, a panel can
// draw the symbol in its own colour, if the program is installed; these pictures are for the
// others.
QIcon trayPicture(const StatusButton&, const std::optional<QColor>&, bool withName);

} // namespace tallowbay::qt
