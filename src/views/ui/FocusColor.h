#pragma once

#include <QColor>

namespace tallowbay::views {

// Of the ring around the button or switch that has the keyboard.
constexpr QColor focusColor(120, 185, 255);

} // namespace tallowbay::views
