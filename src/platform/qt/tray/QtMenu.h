#pragma once

#include "platform/Menu.h"

#include <QMenu>

namespace tallowbay::qt {

std::unique_ptr<QMenu> makeMenu(const Menu&);

} // namespace tallowbay::qt
