#pragma once

#include "platform/tesseract/TesseractEngine.h"

#include <string>
#include <vector>

namespace tallowbay::tesseract {

// Puts blanks where the picture has gaps, and only there: the engine likes them after a full stop
// and loses some between short words. Gives back the symbols with `spaceBefore` set right.
void correctSpaces(std::vector<Symbol>&, const TextLine&);

// Puts the symbols where they can be: the engine misplaces the last of a word at times. Where all
// characters are of one width it reads a letter in two ways at times, of which one goes.
void correctPlaces(std::vector<Symbol>&, const TextLine&);

// Puts in the full stops, hyphens and underscores that the picture has and the engine passed over
// or took for each other.
void addMissingMarks(std::vector<Symbol>&, const TextLine&);

// The symbols as text. Where all characters are of one width, as many blanks as fit; otherwise a
// tabulator for the gap between two columns.
std::string textOf(const std::vector<Symbol>&, const TextLine&);

} // namespace tallowbay::tesseract
