#pragma once

#include "platform/tesseract/Components.h"
#include "platform/tesseract/TextLines.h"

#include <vector>

namespace tallowbay::tesseract {

// The dashes of a line, by their length beside its small letters. The engine takes one for another:
// all it sees of them is a flat stroke. Where all characters have one width only those that fill it
// are told, as long ones.
std::vector<Dash> dashesOf(
    const Plane& ink, const TextLine&, const std::vector<Component>& smallLetters);

} // namespace tallowbay::tesseract
