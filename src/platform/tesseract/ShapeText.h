#pragma once

#include "platform/tesseract/Dashes.h"

#include <vector>

namespace tallowbay::tesseract {

// Makes the lines whose characters all have one width say the same wherever a picture shows the
// same: what most of the cells of one shape were read as, by the engine's own confidence, is what
// all of them are. Cells that were passed over get their character, too. The symbols must be in
// their cells; the shapes are those of the cells of each line.
void settleShapes(std::vector<SymbolLine>&, const std::vector<std::vector<int>>& shapes);

} // namespace tallowbay::tesseract
