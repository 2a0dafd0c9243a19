#pragma once

#include "platform/tesseract/TesseractEngine.h"
#include "platform/tesseract/TextLines.h"

#include <optional>
#include <vector>

namespace tallowbay::tesseract {

// A line of a few signs, as one with a brace alone, tells the engine neither how high its letters
// are nor where they stand. Beside words of the same picture it reads it far better.
bool needsContext(const TextLine&);

// Words to read a line beside.
struct Context {
    const Plane& ink;
    TextLine line;
};

// The beginning of the longest line whose characters all have one width, if any is long enough.
std::optional<Context> contextAmong(const Plane& ink, const std::vector<TextLine>&);

// The symbols of the line alone.
std::vector<Symbol> readWithContext(
    const Plane& ink, const TextLine&, const Context&, TesseractEngine&);

} // namespace tallowbay::tesseract
