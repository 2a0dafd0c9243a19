#pragma once

#include "platform/tesseract/TextLines.h"

#include <vector>

namespace tallowbay::tesseract {

// Which cells of the lines look the same: for every line the number of the shape of each of its
// cells. A program draws one character in one colour with the same pixels every time, so that
// cells of one shape hold one character; one character may have several shapes.
std::vector<std::vector<int>> shapesOf(const Plane& ink, const std::vector<TextLine>&);

} // namespace tallowbay::tesseract
