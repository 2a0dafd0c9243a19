#pragma once

#include "platform/tesseract/TextLines.h"

namespace tallowbay::tesseract {

// The picture of one line as the engine likes it best: dark on white, of a fixed height of letters,
// with wide gaps drawn together and room around.
struct LineImage {
    Plane picture;

    // The column of the ink that a column of the picture shows.
    double sourceColumn(double column) const;

    struct Piece {
        Span source;
        int begin = 0; // in the picture before it was enlarged
    };
    std::vector<Piece> pieces;
    double scale = 1;
};

LineImage makeLineImage(const Plane& ink, const TextLine&);

} // namespace tallowbay::tesseract
