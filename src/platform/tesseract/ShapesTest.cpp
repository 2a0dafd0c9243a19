#include "platform/tesseract/Shapes.h"

#include "platform/tesseract/Ink.h"
#include "platform/tesseract/TestText.h"

#include <gtest/gtest.h>

#include <map>

namespace tallowbay::tesseract {
namespace {

const std::vector<std::string> code{
    "static int index_of(const char *name, int h);", "if (bd0 != O8 && node.hb[1l] == 'I') {", "};",
    "#define PATH_MAX_LENGTH 0x10FFu /* pq */"};

// The shape of every character but the blanks, line by line.
std::vector<std::pair<char, int>> shapesOfCode(const TextDrawing::Look& look)
{
    Plane ink = inkOf(*TextDrawing::draw(code, look));
    const int letter = letterHeight(ink);
    levelContrast(ink, letter);
    const auto lines = findTextLines(ink, letter);
    const auto shapes = shapesOf(ink, lines);
    std::vector<std::pair<char, int>> result;
    for (std::size_t at = 0; at < lines.size() && at < code.size(); ++at) {
        for (std::size_t cell = 0; cell < lines[at].cells.size(); ++cell) {
            const auto column = static_cast<std::size_t>(lines[at].cells[cell].number);
            result.emplace_back(code[at].at(column), shapes[at].at(cell));
        }
    }
    return result;
}

TEST(ShapesTest, AreNeverThoseOfTwoCharacters)
{
    for (const char* typeface : {"DejaVu Sans Mono", "Liberation Mono"}) {
        for (const int pixels : {11, 12, 13, 15, 18}) {
            std::map<int, char> characters;
            for (const auto& [character, shape] : shapesOfCode({typeface, pixels})) {
                const auto known = characters.emplace(shape, character).first;
                EXPECT_EQ(known->second, character) << typeface << " " << pixels;
            }
        }
    }
}

// A program that draws at fractions of a column has up to four pictures of one.
TEST(ShapesTest, AreFewForOneCharacter)
{
    for (const char* typeface : {"DejaVu Sans Mono", "Liberation Mono"}) {
        std::map<char, std::map<int, int>> counts;
        for (const auto& [character, shape] :
             shapesOfCode({typeface, 13, 0xFFD4D4D4u, 0xFF1E1E1Eu}))
            ++counts[character][shape];
        ASSERT_GE(counts.size(), 20u);
        for (const auto& [character, shapes] : counts)
            EXPECT_LE(shapes.size(), 4u) << typeface << " " << character;
    }
}

// A brace alone shows neither a baseline nor a small letter.
TEST(ShapesTest, AreTheSameInALineWithoutLetters)
{
    std::map<char, std::vector<int>> shapes;
    for (const auto& [character, shape] : shapesOfCode({"DejaVu Sans Mono", 13}))
        shapes[character].push_back(shape);
    ASSERT_EQ(shapes[';'].size(), 2u);
    EXPECT_EQ(shapes[';'][0], shapes[';'][1]);
}

} // namespace
} // namespace tallowbay::tesseract
