#pragma once

#include "editor/AnnotationItem.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tallowbay {

// Why a list of items cannot be read, for people.
struct ItemsProblem {
    std::string sentence;
};

// A list of items as JSON, each as the model has it:
//
//   [{"tool": 0, "rect": {"x": 10, "y": 20, "width": 30, "height": -40},
//     "text": "only of a text", "color": {"red": 1, "green": 0.8, "blue": 0, "alpha": 1}}]
//
// The tool may also be its name ("blur"), the rectangle [x, y, width, height], the colour [red,
// green, blue] with or without alpha; without a colour an item is yellow. The list may stand in an
// object under "items". What is drawn stays within a million points of the origin.
std::variant<std::vector<AnnotationItem>, ItemsProblem> parseItems(std::string_view json);

} // namespace tallowbay
