#pragma once

#include "base/PixelRect.h"
#include "platform/Screens.h"

#include <QRect>

namespace tallowbay::qt {

// The screens as Qt knows them; a point is one of Qt's device-independent pixels.
class QtScreens final : public Screens {
public:
    std::optional<Rect> mainFrame() const override;
    std::vector<Rect> frames() const override;
    std::optional<Point> pointer() const override;
};

// Where a frame, whose y grows upwards from the main screen's lower edge, lies on Qt's desktop.
// Rounded to whole points.
QRect desktopRect(const Rect& frame);

// The display server's pixels of a rectangle of Qt's desktop, by the screen that its middle is on;
// empty if it is on none.
PixelRect desktopPixels(const QRect&);

} // namespace tallowbay::qt
