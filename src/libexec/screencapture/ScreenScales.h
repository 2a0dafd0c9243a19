#pragma once

#include <QString>

namespace tallowbay::screencapture {

// How much larger than at 96 dots per inch things should look on each screen.
//
// The overlay works in device pixels, where a pixel of the pointer is a pixel of the picture, so it
// takes the settings away from Qt and applies them to its lettering and lines alone.
class ScreenScales {
public:
    // Reads QT_SCALE_FACTOR and QT_SCREEN_SCALE_FACTORS and makes Qt ignore them. Before the
    // application object is made.
    static ScreenScales takenFromQt();

    // The values of the two variables; empty where unset.
    ScreenScales(const QString& everywhere, const QString& byScreen);

    // At least 1. The screen's index counts where the settings list scales without names.
    double of(const QString& screenName, int index, double dotsPerInch) const;

private:
    double fromDots(double dotsPerInch) const;

    double everywhere;
    QString byScreen;
};

} // namespace tallowbay::screencapture
