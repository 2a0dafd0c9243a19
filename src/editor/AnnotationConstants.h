#pragma once

#include "platform/Graphics.h"

#include <array>
#include <numbers>
#include <string>

namespace tallowbay {

// Lengths are points of the canvas.
inline constexpr double imageInset = 48; // free on every side of the fitted image
inline constexpr double handleRadius = 5;
inline constexpr double handleHitTolerance = 12;
inline constexpr double arrowHitTolerance = 10;
inline constexpr double minimumArrowLength = 8; // to be exceeded
inline constexpr double minimumRectangleSide = 4; // to be exceeded

inline constexpr Font annotationFont{16, FontWeight::semibold};
inline constexpr Color annotationTextBackground = Color::white(0, 0.6);
inline constexpr double arrowHeadHalfAngle = std::numbers::pi / 6;

// The colours on offer; new items of every kind take the chosen one.
inline constexpr std::array<Color, 5> swatchColorValues{
    {systemYellow, {0.08, 0.65, 0.28}, {0.12, 0.38, 0.90}, {0.85, 0.12, 0.28}, {0.88, 0.42, 0.02}}};

// The spaces widen the dark background on both sides of the text.
inline std::string paddedAnnotationText(const std::string& text)
{
    return " " + text + " ";
}

} // namespace tallowbay
