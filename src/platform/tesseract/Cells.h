#pragma once

#include "platform/tesseract/TextLines.h"

#include <vector>

namespace tallowbay::tesseract {

// The places of a line's characters where all have one width, blanks left out. The centres are
// those of its letters, in columns; a program that draws word by word lets the grid slip between
// words, so that only the letters around a place tell where it is. None without letters.
std::vector<Cell> cellsOf(const Plane& ink, const TextLine&, const std::vector<double>& centres);

} // namespace tallowbay::tesseract
