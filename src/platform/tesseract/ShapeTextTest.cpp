#include "platform/tesseract/ShapeText.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

// Lines of cells ten columns wide: what each shows, one shape a character, and what was read.
class ShapeTextTest : public testing::Test {
protected:
    void line(const std::string& shown, const std::string& read, double confidence = 0.9)
    {
        SymbolLine made{{{0, 14}, {}, 10, 8, 10, {}}, {}};
        std::vector<int> itsShapes;
        for (std::size_t at = 0; at < shown.size(); ++at) {
            if (shown[at] == ' ')
                continue;
            const double centre = 10.0 * static_cast<double>(at) + 5;
            made.line.cells.push_back({static_cast<int>(at), centre});
            itsShapes.push_back(shown[at]);
            if (read[at] != ' ')
                made.symbols.push_back({read.substr(at, 1), centre, false, confidence});
        }
        lines.push_back(made);
        shapes.push_back(itsShapes);
    }

    std::string text(std::size_t number)
    {
        std::string all;
        for (const Symbol& symbol : lines[number].symbols)
            all += symbol.text;
        return all;
    }

    std::vector<SymbolLine> lines;
    std::vector<std::vector<int>> shapes;
};

TEST_F(ShapeTextTest, ReadsAShapeAsItIsReadMostSurely)
{
    line("a}b", "a}b");
    line("};", "hi", 0.5);
    line("};", "};");
    settleShapes(lines, shapes);
    EXPECT_EQ(text(1), "};");
}

TEST_F(ShapeTextTest, LeavesAShapeAloneThatIsReadInTwoWaysEquallySurely)
{
    line("ab", "al");
    line("ab", "a1");
    settleShapes(lines, shapes);
    EXPECT_EQ(text(0), "al");
    EXPECT_EQ(text(1), "a1");
}

TEST_F(ShapeTextTest, FillsInACharacterThatWasPassedOver)
{
    line("a;b", "a;b");
    line(";;", "  ");
    settleShapes(lines, shapes);
    EXPECT_EQ(text(1), ";;");
}

TEST_F(ShapeTextTest, DropsASymbolBetweenTwoSureCells)
{
    line("abc", "abc");
    lines[0].symbols.insert(lines[0].symbols.begin() + 1, {"j", 9, false, 0.9});
    settleShapes(lines, shapes);
    EXPECT_EQ(text(0), "abc");
}

TEST_F(ShapeTextTest, CountsARulerAsOneReading)
{
    line("/********", "/KKKKKKKK", 0.8);
    line("a*b", "a*b");
    settleShapes(lines, shapes);
    EXPECT_EQ(text(0), "/********");
}

TEST_F(ShapeTextTest, ReadsARoundSignAmongFiguresAsAZero)
{
    line("10 0x40 00", "1@ Qx4O @@");
    settleShapes(lines, shapes);
    EXPECT_EQ(text(0), "100x4000");
}

TEST_F(ShapeTextTest, KeepsARoundLetterAmongLetters)
{
    line("OK NO O1 1O", "OK NO O1 1O");
    settleShapes(lines, shapes);
    EXPECT_EQ(text(0), "OKNOO11O");
}

TEST_F(ShapeTextTest, StraightensQuotesBeforeTheyAreCounted)
{
    line("'a'", "'a'");
    lines[0].symbols.front().text = "‘";
    lines[0].symbols.back().text = "’";
    settleShapes(lines, shapes);
    EXPECT_EQ(text(0), "'a'");
}

TEST_F(ShapeTextTest, LeavesLinesWithoutCellsAsTheyAre)
{
    lines.push_back({TextLine(), {{"‘", 5, false, 0.9}, {"O", 9, false, 0.9}}});
    shapes.emplace_back();
    settleShapes(lines, shapes);
    EXPECT_EQ(text(0), "‘O");
}

} // namespace
} // namespace tallowbay::tesseract
