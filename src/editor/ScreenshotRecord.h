#pragma once

#include "editor/AnnotationItem.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace tallowbay {

// All that the editor knows of one screenshot. There is one record for each, so that what belongs
// together cannot come apart.
struct ScreenshotRecord {
    std::filesystem::path url;
    std::vector<AnnotationItem> annotations; // later ones lie on top
    std::vector<AnnotationItem> redo; // undone and deleted items; the last one comes back first
    Size canvasSize; // of the canvas on which the points of both count
    bool checked = true; // for the clipboard
    int badgeNumber = 1; // its place in its batch, counted when it was added
    std::size_t headerColor = 0; // of the header's palette, chosen when it was added
    std::uint64_t id = 0; // its own, never given again, above zero for one that stands in the strip
};

} // namespace tallowbay
