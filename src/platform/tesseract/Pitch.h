#pragma once

#include <vector>

namespace tallowbay::tesseract {

// Stretches of text, each given by the centres of its letters, in columns.
using Stretches = std::vector<std::vector<double>>;

// How well letters fit grids of that pitch, where every stretch of text has a grid of its own: 1 is
// perfectly. 0 without letters.
double pitchFit(const Stretches&, double pitch);

// The width of every character if they all have the same, as in most of the lines of a page; else
// 0.
double pitchOf(const Stretches&, double smallLetter);

} // namespace tallowbay::tesseract
