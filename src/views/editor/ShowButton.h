#pragma once

#include "editor/window/ToolRail.h"
#include "views/ui/HoverButton.h"

namespace tallowbay::views {

// Has a button show what the logic says of it.
void showButton(HoverButton&, const RailButton&, double symbolSize);

} // namespace tallowbay::views
