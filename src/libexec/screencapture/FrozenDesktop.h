#pragma once

#include "libexec/screencapture/ScreenScales.h"

#include <QImage>
#include <QRect>

#include <vector>

namespace tallowbay::screencapture {

// What all screens showed at one moment, in device pixels. Where no screen is, it is black.
struct FrozenDesktop {
    struct Screen {
        QRect area; // of the desktop
        double scale;
    };

    QRect area; // of all screens; need not begin at (0, 0)
    std::vector<Screen> screens;
    QImage image; // of that area; null if the screens cannot be read

    // Needs the application object.
    static FrozenDesktop taken(const ScreenScales&);

    const Screen& screenAt(QPoint) const;
};

} // namespace tallowbay::screencapture
