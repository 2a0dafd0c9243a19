#pragma once

#include "base/Geometry.h"
#include "platform/Graphics.h"

#include <array>

namespace tallowbay {

inline constexpr Color glassTint = Color::white(1, 0.2); // over what shines through a glass card

// The rim of a glass card: one point wide, brightest at the upper left corner, and fading towards
// the lower right one.
struct GradientRim {
    static constexpr double lineWidth = 1;

    // At the start, half-way and at the end.
    static constexpr std::array<Color, 3> colors{
        {Color::white(1, 0.55), Color::white(1, 0.12), Color::white(1, 0.04)}};

    // In the unit square of the card, y upwards.
    static constexpr Point start{0, 1};
    static constexpr Point end{1, 0};

    static constexpr double defaultRadius = 20; // of a card that asks for no other

    // The middle of the line, inside of a card of that size.
    static constexpr RoundedRect path(Size card, double radius)
    {
        constexpr double inset = lineWidth / 2;
        return {{{inset, inset}, {card.width - lineWidth, card.height - lineWidth}}, radius};
    }
};

} // namespace tallowbay
