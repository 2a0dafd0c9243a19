#pragma once

#include <QRect>

namespace tallowbay::views {

// Where the parts of the editor stand in a window of that size, in points from the upper left
// corner: the card with the canvas in the middle, the rail of tools beside it, the colours over its
// lower edge, and the strip below, from one side to the other.
struct EditorLayout {
    QRect canvasCard;
    QRect toolRail;
    QRect swatchCard;
    QRect strip;

    static EditorLayout of(const QSize& window, const QSize& toolRail, const QSize& swatchCard);
};

} // namespace tallowbay::views
