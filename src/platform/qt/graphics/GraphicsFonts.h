#pragma once

#include "platform/TextMeasurer.h"

#include <QFont>
#include <QStringList>

namespace tallowbay::qt {

// The font of our windows and of what we draw: the one that they are designed for, else the
// desktop's own. Without hinting, so that a text of twice the size is twice as wide, and a widget
// shows what was measured.

// For widgets, whose fonts are of whole points. Thread: main.
QFont interfaceFont(const Font&);

// Measures it in any size, and has it for drawing.
//
// The constructor belongs on the main thread and after the application object; copies may be used
// on any thread.
class GraphicsFonts final : public TextMeasurer {
public:
    GraphicsFonts();

    Size measure(const std::string& text, const Font&) const override;

    struct Measures {
        QStringList lines;
        Size box;
        double ascent = 0; // of a line's top above its baseline
        double lineHeight = 0;
    };
    Measures measures(const std::string& text, const Font&) const;

    // A font to draw with, and the factor by which the drawing is to be scaled for this size.
    struct Scaled {
        QFont font;
        double factor = 1;
    };
    Scaled scaled(const Font&) const;

private:
    QFont reference(const Font&) const;

    QFont base;
};

} // namespace tallowbay::qt
