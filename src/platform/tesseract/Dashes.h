#pragma once

#include "platform/tesseract/TesseractEngine.h"
#include "platform/tesseract/TextLines.h"

#include <vector>

namespace tallowbay::tesseract {

// A line and what is read in it.
struct SymbolLine {
    TextLine line;
    std::vector<Symbol> symbols; // from left to right, `spaceBefore` set right
};

// Makes en dashes of the hyphens and long dashes that are en dashes for certain, by their length
// beside the letters of the page; the engine knows none. A hyphen is by far the more frequent, and
// in options, signs and amounts the only one: what may be one stays as it is.
void settleDashes(const Plane& ink, std::vector<SymbolLine>&);

} // namespace tallowbay::tesseract
