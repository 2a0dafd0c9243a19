#include "platform/tesseract/Cells.h"

#include "platform/tesseract/Ink.h"
#include "platform/tesseract/TestText.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

std::vector<Cell> cellsOf(const std::string& text, const TextDrawing::Look& look)
{
    // A line alone may be too short to tell how wide its characters are.
    Plane ink = inkOf(*TextDrawing::draw({"while (index < count)", text}, look));
    const int letter = letterHeight(ink);
    levelContrast(ink, letter);
    const auto lines = findTextLines(ink, letter);
    return lines.size() < 2 ? std::vector<Cell>() : lines[1].cells;
}

// An underscore as itself, a blank as itself, all others as x.
std::string shapeOf(const std::vector<Cell>& cells)
{
    std::string shape;
    for (const Cell& cell : cells) {
        shape.resize(static_cast<std::size_t>(cell.number), ' ');
        shape += cell.isUnderscore ? '_' : 'x';
    }
    return shape;
}

void expectShape(const std::string& text, const TextDrawing::Look& look)
{
    std::string shape = text;
    for (char& letter : shape)
        letter = letter == '_' || letter == ' ' ? letter : 'x';
    EXPECT_EQ(shapeOf(cellsOf(text, look)), shape) << look.typeface << " " << look.pixels;
}

const std::vector<const char*> typefaces{"DejaVu Sans Mono", "Liberation Mono"};

TEST(CellsTest, TellHowManyUnderscoresThereAre)
{
    for (const char* typeface : typefaces) {
        for (const int pixels : {11, 12, 13, 15, 18}) {
            expectShape("__attribute__((__packed__)) count_;", {typeface, pixels});
            expectShape(
                "a_b a__b a___b ____ (__LINE__)", TextDrawing::greyOnDark(typeface, pixels));
        }
    }
}

TEST(CellsTest, TellOnWhichSideOfABlankAnUnderscoreIs)
{
    for (const char* typeface : typefaces) {
        for (const int pixels : {11, 13, 17}) {
            expectShape("u8 _slot, size_t n_ = _last_ - __first;", {typeface, pixels});
            expectShape(
                "none _ __ _  a_ e _c _, (_) [_] x", TextDrawing::greyOnDark(typeface, pixels));
        }
    }
}

TEST(CellsTest, TakeNoTailForAnUnderscore)
{
    for (const char* typeface : typefaces)
        expectShape("gypsy jqgp, {};|$@ are get_type_of_page(jury) sure", {typeface, 14});
}

TEST(CellsTest, TellAZeroFromARoundLetter)
{
    for (const char* typeface : typefaces) {
        for (const int pixels : {11, 13, 14, 18}) {
            const auto cells = cellsOf("0O0OO00O open house of", {typeface, pixels});
            ASSERT_GE(cells.size(), 8u);
            std::string round;
            for (std::size_t at = 0; at < 8; ++at)
                round += cells[at].hasCore ? '0' : 'O';
            EXPECT_EQ(round, "0O0OO00O") << typeface << " " << pixels;
        }
    }
}

TEST(CellsTest, AreNoneWhereCharactersDifferInWidth)
{
    EXPECT_TRUE(cellsOf("while (index_of < count)", {"DejaVu Sans", 15}).empty());
}

} // namespace
} // namespace tallowbay::tesseract
