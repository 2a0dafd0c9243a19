#pragma once

#include "editor/AnnotationItem.h"

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
};

} // namespace tallowbay
