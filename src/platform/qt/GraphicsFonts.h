#pragma once

#include "platform/Windows.h"

#include <QFont>

namespace tallowbay::qt {

// The interface font as the graphics draw it: without hinting, so that a text of twice the size is
// twice as wide.
//
// The constructor belongs on the main thread and after the application object; copies may be used
// on any thread.
class GraphicsFonts final : public TextMeasurer {
public:
    GraphicsFonts();

    // The box of the text: the longest line's width, and one line height a line.
    Size measure(const std::string& text, const Font&) const override;

    // A font to draw with, and the factor by which the drawing is to be scaled for this size.
    struct Scaled {
        QFont font;
        double factor = 1;
    };
    Scaled scaled(const Font&) const;

    double ascent(const Font&) const;
    double lineHeight(const Font&) const;

private:
    QFont reference(const Font&) const;

    QFont base;
};

} // namespace tallowbay::qt
