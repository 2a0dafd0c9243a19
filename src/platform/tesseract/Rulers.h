#pragma once

#include "platform/tesseract/TesseractEngine.h"
#include "platform/tesseract/TextLines.h"

#include <vector>

namespace tallowbay::tesseract {

// A line with all but a few cells of a ruler taken out, as in a comment of many asterisks: the
// engine takes long rulers for anything.
struct ShortenedLine {
    Plane ink;
    TextLine line;
    int cutAt = 0; // column from which on
    int cut = 0; // so many columns are out; 0 if there is no long ruler

    // Where it is in the whole line.
    double wholeColumn(double column) const { return column < cutAt ? column : column + cut; }
};

// The shapes are those of the line's cells.
ShortenedLine shortened(const Plane& ink, const TextLine&, const std::vector<int>& shapes);

} // namespace tallowbay::tesseract
