#pragma once

#include "base/Geometry.h"

#include <QColor>

#include <algorithm>

namespace tallowbay::qt {

// Components beyond 0 and 1 are cut off.
inline QColor qtColor(const Color& color)
{
    const auto part = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
    return QColor::fromRgbF(
        part(color.red), part(color.green), part(color.blue), part(color.alpha));
}

} // namespace tallowbay::qt
