#pragma once

#include "platform/tesseract/Plane.h"

#include <vector>

namespace tallowbay::tesseract {

constexpr int solidInk = 80; // ink that is part of a letter and not its soft edge

struct Area {
    Span columns;
    Span rows;
};

bool rowHasInk(const Plane& ink, int y, Span columns);

// The spans of columns with ink, from left to right.
std::vector<Span> inkColumns(const Plane& ink, const Area&);

// The areas of the lines of text, in reading order: from top to bottom, what stands side by side
// from left to right; columns of running text one after the other.
std::vector<Area> findLineAreas(const Plane& ink, int letterHeight);

} // namespace tallowbay::tesseract
