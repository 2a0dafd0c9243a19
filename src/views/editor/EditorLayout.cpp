#include "views/editor/EditorLayout.h"

#include "editor/window/EditorLook.h"

namespace tallowbay::views {

namespace {

constexpr double cardWidthPart = 2 / 3.0; // of the window's width, where that is enough
constexpr int wideCard = 960;
constexpr int railGap = 18; // between rail and card
constexpr int railMargin = 24; // at least this to the window's edge
constexpr int swatchMargin = 15; // above the card's lower edge

// Free space grows with the window, from the first value to no end.
int share(int length, double part, int least)
{
    return std::max(least, qRound(length * part));
}

} // namespace

EditorLayout EditorLayout::of(const QSize& window, const QSize& rail, const QSize& swatches)
{
    const int top = share(window.height(), 0.052, 28);
    const int gap = share(window.height(), 0.034, 20);
    const int bottom = share(window.height(), 0.015, 8);
    const int stripHeight = qRound(stripInsetTop + cellSize.height + stripInsetBottom);
    const int widest = window.width() - 2 * (rail.width() + railGap + railMargin);
    const int width = std::min(widest, share(window.width(), cardWidthPart, wideCard));

    EditorLayout layout;
    layout.strip = QRect(0, window.height() - bottom - stripHeight, window.width(), stripHeight);
    layout.canvasCard =
        QRect((window.width() - width) / 2, top, width, layout.strip.top() - gap - top);
    const QRect& card = layout.canvasCard;
    layout.toolRail = QRect(
        QPoint(card.left() - railGap - rail.width(), card.center().y() - rail.height() / 2), rail);
    layout.swatchCard = QRect(
        QPoint(
            card.center().x() - swatches.width() / 2,
            card.bottom() + 1 - swatchMargin - swatches.height()),
        swatches);
    return layout;
}

} // namespace tallowbay::views
