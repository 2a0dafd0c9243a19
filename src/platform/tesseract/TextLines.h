#pragma once

#include "platform/tesseract/Plane.h"

#include <vector>

namespace tallowbay::tesseract {

// A part of a line that is one character for sure, by its shape and its place: . - or _
struct Mark {
    char character;
    Span columns;
};

// The place of a character where all have the same width.
struct Cell {
    int number; // from the first of its line
    double centre; // in columns
    bool isUnderscore = false;
    bool hasCore = false; // ink in the middle, where a round letter has none
};

// One line of text in a plane of ink.
struct TextLine {
    Span rows; // that hold its ink
    std::vector<Span> runs; // of columns with ink, from left to right, blank columns between them
    int baseline = 0; // the row below the letters that have no tail
    double smallLetter = 0; // height of an x
    double pitch = 0; // width of every character, 0 if they differ

    std::vector<Mark> marks; // from left to right
    std::vector<Cell> cells = {}; // that are not blank; none if the characters' widths differ
    int letters = 0; // how many, with signs of their height

    Span columns() const { return {runs.front().begin, runs.back().end}; }
};

// In reading order: from top to bottom, what stands side by side from left to right; columns of
// running text one after the other.
std::vector<TextLine> findTextLines(const Plane& ink, int letterHeight);

} // namespace tallowbay::tesseract
