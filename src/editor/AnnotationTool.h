#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace tallowbay {

// What the user marks up with. The values are the buttons' tags, in the order of the tool rail.
enum class AnnotationTool : int { highlight = 0, arrow = 1, text = 2, blur = 3 };

inline constexpr std::array annotationTools{
    AnnotationTool::highlight, AnnotationTool::arrow, AnnotationTool::text, AnnotationTool::blur};

// Empty for a value that belongs to no tool.
std::optional<AnnotationTool> annotationToolFromRawValue(int rawValue);

inline constexpr int rawValue(AnnotationTool tool)
{
    return static_cast<int>(tool);
}

// The tool of a button: a tag that belongs to none stands for the highlight.
AnnotationTool annotationToolForTag(int tag);

// The symbol's name, and what a screen reader says.
std::string_view railSymbol(AnnotationTool);
std::string_view railLabel(AnnotationTool);

} // namespace tallowbay
