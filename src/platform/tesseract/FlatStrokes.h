#pragma once

#include "platform/tesseract/TextLines.h"

#include <vector>

namespace tallowbay::tesseract {

// A stroke half way up a small letter with nothing above or below it, as dashes are. It may touch
// the letters beside it.
struct FlatStroke {
    Span columns;
    double length; // in columns; soft ends count for what they have
    bool even; // as dark all along; two hyphens that touch are not

    double middle() const { return (columns.begin + columns.end) / 2.0; }
};

// From left to right.
std::vector<FlatStroke> flatStrokesOf(const Plane& ink, const TextLine&);

// How wide the ink of a run is, in columns; soft ends count for what they have.
double inkWidth(const Plane& ink, const TextLine&, Span run);

} // namespace tallowbay::tesseract
