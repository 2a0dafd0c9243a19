#pragma once

#include "Random.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay::bench {

using Colour = std::uint32_t; // 0xRRGGBB

// A stretch of text in one look. Pieces of one column follow each other without a gap.
struct Piece {
    std::string text;
    int column = 0;
    std::optional<Colour> colour = {}; // the theme's, if it names none
    bool rightAligned = false;
    bool underlined = false;
    bool bold = false;
};

struct Row {
    std::vector<Piece> pieces;
    std::optional<Colour> background = {}; // a band across the picture
};

enum class Antialiasing { grey, subpixel };
enum class Hinting { none, slight, full };

// Text as a desktop would show it, before it is painted.
struct Sample {
    std::string category;
    std::string typeface;
    int textPixels = 12;
    Colour foreground = 0;
    Colour background = 0xFFFFFF;
    Antialiasing antialiasing = Antialiasing::grey;
    Hinting hinting = Hinting::slight;
    double lineSpacing = 1.3; // times the text's own height
    int margin = 10;
    int columnGap = 24;
    std::vector<Row> rows;
};

// The texts that samples are made of, from the files of a folder, each of that name.
struct Corpus {
    std::vector<std::string> prose;
    std::vector<std::string> words;
    std::vector<std::vector<std::string>> code; // snippets of lines
    std::vector<std::vector<std::string>>
        symbols; // code full of underscores and hexadecimal digits
    std::vector<std::string> dashes; // sentences with dashes of all lengths
    std::vector<std::string> ui;
};
Corpus loadCorpus(const std::filesystem::path& folder);

const std::vector<std::string>& categories();

// The number decides the typeface, the size and the category, so that a run of numbers covers all
// of them evenly; chance decides the rest.
Sample makeSample(const Corpus&, int number, Random&);

// The text of a sample, row by row, columns apart by two blanks.
std::string textOf(const Sample&);

} // namespace tallowbay::bench
