#pragma once

#include <string>
#include <vector>

namespace tallowbay::tesseract {

// Mends what an engine that learnt from books gets wrong on screens: quotes, names of keys. The
// lines belong to one picture and are changed in place.
void repairScreenText(std::vector<std::string>& lines, const std::vector<bool>& isCode);

} // namespace tallowbay::tesseract
