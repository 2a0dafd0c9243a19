#include "editor/AnnotationTool.h"

#include "base/Fatal.h"

namespace tallowbay {

namespace {

struct RailEntry {
    std::string_view symbol;
    std::string_view label;
};

constexpr std::array<RailEntry, 4> rail{{
    {"pencil.tip", "Highlight"},
    {"arrow.up.right", "Arrow"},
    {"textformat", "Text"},
    {"eye.slash", "Blur"},
}};

const RailEntry& entryOf(AnnotationTool tool)
{
    return checkedAt(rail, static_cast<std::size_t>(rawValue(tool)));
}

} // namespace

std::optional<AnnotationTool> annotationToolFromRawValue(int rawValue)
{
    if (rawValue < 0 || rawValue >= static_cast<int>(annotationTools.size()))
        return std::nullopt;
    return static_cast<AnnotationTool>(rawValue);
}

AnnotationTool annotationToolForTag(int tag)
{
    return annotationToolFromRawValue(tag).value_or(AnnotationTool::highlight);
}

std::string_view railSymbol(AnnotationTool tool)
{
    return entryOf(tool).symbol;
}

std::string_view railLabel(AnnotationTool tool)
{
    return entryOf(tool).label;
}

} // namespace tallowbay
