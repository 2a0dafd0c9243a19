#pragma once

#include "platform/tesseract/TesseractEngine.h"

#include <string>
#include <vector>

namespace tallowbay::tesseract {

// Gives every symbol of a line whose characters all have one width the cell that it was read from,
// and every underscore that the picture has to the text: the engine takes several for one, and
// lets one change its place with a neighbour.
void putInCells(std::vector<Symbol>&, const TextLine&);

} // namespace tallowbay::tesseract
