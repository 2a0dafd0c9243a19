#include "platform/tesseract/LineText.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

// Each character stands for itself in a run of columns of its own: a dot of four columns and a gap
// of as many as it says.
class LineTextTest : public testing::Test {
protected:
    void add(const std::string& text, int gap, bool spaceBefore = false)
    {
        const int begin = line.runs.empty() ? 0 : line.runs.back().end + gap;
        line.runs.push_back({begin, begin + 4});
        symbols.push_back({text, begin + 2.0, spaceBefore, 1});
    }

    std::string text()
    {
        correctSpaces(symbols, line);
        return textOf(symbols, line);
    }

    TextLine line{{0, 14}, {}, 10, 8, 0, {}};
    std::vector<Symbol> symbols;
};

TEST_F(LineTextTest, TakesOutABlankWhereThereIsNoGap)
{
    add("a", 0);
    add(".", 1);
    add("p", 2, true);
    EXPECT_EQ(text(), "a.p");
}

TEST_F(LineTextTest, KeepsABlankAtTheEndOfASentence)
{
    add(".", 0);
    add("T", 3, true);
    EXPECT_EQ(text(), ". T");
}

TEST_F(LineTextTest, PutsABlankInAWideGap)
{
    add("a", 0);
    add("b", 6);
    EXPECT_EQ(text(), "a b");
}

TEST_F(LineTextTest, PutsATabulatorBetweenColumns)
{
    add("a", 0);
    add("1", 60, true);
    EXPECT_EQ(text(), "a\t1");
}

TEST_F(LineTextTest, PutsAsManyBlanksAsFitWhereAllCharactersAreOfOneWidth)
{
    line.pitch = 6;
    add("a", 0);
    add(".", 3, true);
    add("b", 2 + 6, true);
    add("c", 2 + 18, true);
    EXPECT_EQ(text(), "a. b   c");
}

TEST_F(LineTextTest, PutsInAMarkThatTheEngineMissed)
{
    add("3", 0);
    line.runs.push_back({6, 8});
    line.marks.push_back({'.', {6, 8}});
    add("5", 2);
    addMissingMarks(symbols, line);
    EXPECT_EQ(text(), "3.5");
}

TEST_F(LineTextTest, PutsASymbolThatIsOutOfOrderBetweenItsNeighbours)
{
    add("a", 0);
    add(".", 2);
    add("b", 2);
    symbols[1].centre = 40;
    correctPlaces(symbols, line);
    EXPECT_EQ(symbols[1].centre, 8);
}

TEST_F(LineTextTest, DropsALetterThatWasReadTwiceWhereAllCharactersAreOfOneWidth)
{
    line.pitch = 6;
    add("t", 0);
    add("l", 2);
    symbols.push_back({"L", symbols.back().centre + 2, false, 0.5});
    add("a", 2);
    correctPlaces(symbols, line);
    EXPECT_EQ(text(), "tla");
}

TEST_F(LineTextTest, KeepsALetterThatIsThereTwice)
{
    line.pitch = 6;
    add("l", 0);
    symbols.push_back({"l", symbols.back().centre + 2, false, 0.5});
    correctPlaces(symbols, line);
    EXPECT_EQ(symbols.size(), 2u);
}

TEST_F(LineTextTest, PutsRightAMarkThatWasTakenForAnother)
{
    add("-", 0);
    add("b", 2);
    line.marks.push_back({'.', {0, 4}});
    addMissingMarks(symbols, line);
    EXPECT_EQ(text(), ".b");
}

TEST_F(LineTextTest, PutsInNoMarkThatTheEngineSaw)
{
    add("3", 0);
    add(",", 2);
    add("5", 2);
    line.marks.push_back({'.', {6, 8}});
    addMissingMarks(symbols, line);
    EXPECT_EQ(text(), "3,5");
}

} // namespace
} // namespace tallowbay::tesseract
