#pragma once

#include "base/Geometry.h"
#include "editor/AnnotationTool.h"

#include <optional>
#include <string>
#include <vector>

namespace tallowbay {

// A round button with a symbol.
struct RailButton {
    std::string symbol;
    std::string label; // for assistive programs
    std::string tooltip; // with the key, where there is one
    int tag = 0; // of a tool
    bool selected = false;
    Color tint;
    std::optional<Color> background; // of the circle around it
    bool operator==(const RailButton&) const = default;
};

// Top to bottom; below them come undo and redo.
std::vector<RailButton> toolButtons(AnnotationTool selected);
RailButton undoButton();
RailButton redoButton();
RailButton settingsButton(); // in the canvas's header

// What a screen reader says of a swatch, by its place.
std::string swatchLabel(std::size_t index);

} // namespace tallowbay
