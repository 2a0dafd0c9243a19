#pragma once

#include "base/Geometry.h"
#include "editor/strip/ThumbnailStrip.h"

#include <array>
#include <chrono>

namespace tallowbay {

// The measures of the editor's window, in points.

inline constexpr Size screenlessEditorSize{1440, 900}; // where no screen is connected
inline constexpr Color editorDim = Color::white(0, 0.2); // over the desktop
inline constexpr std::chrono::milliseconds editorFadeIn{200};
inline constexpr std::chrono::milliseconds editorFadeOut{150};

// The rail of tools: a glass card.
inline constexpr double toolRailRadius = 28;
inline constexpr double toolRailSpacing = 4;
inline constexpr double toolRailInset = 10; // on every side
inline constexpr double toolButtonSide = 36; // a circle
inline constexpr double toolHoverAlpha = 0.12;
inline constexpr double toolSymbolSize = 16; // medium weight
inline constexpr Color toolTint = Color::white(0.85);
inline constexpr Color selectedToolTint = Color::white(1);
inline constexpr Color selectedToolBackground = Color::white(1, 0.18);
inline constexpr double idleToolRailAlpha = 0.35; // until a screenshot is shown

// The card with the canvas.
inline constexpr double canvasCardRadius = 16;
inline constexpr double canvasHeaderHeight = 56;
inline constexpr double settingsButtonSide = 28;
inline constexpr double settingsButtonRadius = 6;
inline constexpr double settingsHoverAlpha = 0.15;
inline constexpr Color settingsTint = Color::white(0.25);
inline constexpr double settingsTrailing = 14;
inline constexpr Font titleFont{15, FontWeight::semibold};
inline constexpr Color titleColor = Color::white(0.2);
// Until the first screenshot gives the header its colour, both stand on dark glass, on which their
// own colours could not be read.
inline constexpr Color titleOnGlassColor = Color::white(1, 0.85);
inline constexpr Color settingsOnGlassTint = Color::white(0.85);
inline constexpr Font placeholderFont{14, FontWeight::regular};
inline constexpr Color canvasPlaceholderColor = Color::white(1, 0.25);

// The card with the colours: a glass card.
inline constexpr double swatchCardRadius = 16;
inline constexpr double swatchSpacing = 5;
inline constexpr double swatchInset = 6;
inline constexpr double swatchSide = 20; // the disc
inline constexpr double swatchRingSide = 17; // white, on the chosen one
inline constexpr double swatchCoreSide = 11; // of the colour, on the chosen one
inline constexpr double swatchHoverAlpha = 0.15;
inline constexpr std::chrono::milliseconds swatchFade{150};

// The strip.
inline constexpr double stripSpacing = 24;
inline constexpr double stripInsetTop = 16;
inline constexpr double stripInsetSide = 24;
inline constexpr double stripInsetBottom = 16;
inline constexpr Size dividerSize{10, 152};
inline constexpr double dividerRadius = 5;
inline constexpr Color dividerColor{163 / 255.0, 58 / 255.0, 58 / 255.0};

// A cell of the strip.
inline constexpr Size cellSize{200, 152};
inline constexpr double cellRadius = 16;
inline constexpr double cellHeaderHeight = 36;
inline constexpr double selectedCellBorder = 4;
inline constexpr Color cellBackground = Color::white(217 / 255.0);
inline constexpr Color hoveredCellBackground = Color::white(0.88);
inline constexpr double checkboxLeading = 10;
inline constexpr double checkboxSide = 22;
inline constexpr double checkboxSymbolSize = 18;
inline constexpr double checkboxGroundSide = 14; // white, behind the mark
inline constexpr double checkboxGroundRadius = 3;
inline constexpr Color uncheckedTint = Color::white(0.6);
inline constexpr double badgeGap = 6; // after the check box
inline constexpr double badgeSide = 20; // a circle
inline constexpr Color badgeBackground = Color::white(1, 0.45);
inline constexpr Font badgeFont{11, FontWeight::bold};
inline constexpr Color badgeColor = Color::white(0.15);
inline constexpr double captionTrailing = 10;
inline constexpr Font captionFont{11, FontWeight::medium};
inline constexpr Color captionColor = Color::white(0.2, 0.85);
inline constexpr double imageWellRadius = 12; // black
inline constexpr double imageWellInset = 8; // to the left, the right and below
inline constexpr double imageWellGap = 6; // to the header
inline constexpr Size imageWellSize{
    cellSize.width - 2 * imageWellInset,
    cellSize.height - cellHeaderHeight - imageWellGap - imageWellInset};

inline constexpr std::array<Color, headerPaletteSize> headerPalette{
    {{254 / 255.0, 171 / 255.0, 171 / 255.0},
     {171 / 255.0, 212 / 255.0, 254 / 255.0},
     {171 / 255.0, 254 / 255.0, 196 / 255.0},
     {254 / 255.0, 228 / 255.0, 171 / 255.0},
     {212 / 255.0, 171 / 255.0, 254 / 255.0}}};

} // namespace tallowbay
