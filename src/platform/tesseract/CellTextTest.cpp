#include "platform/tesseract/CellText.h"

#include "platform/tesseract/LineText.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

// Cells of ten columns that hold a text, and what the engine made of it: each symbol with its place
// in cells, wherever the engine believed it to be.
class CellTextTest : public testing::Test {
protected:
    void picture(const std::string& text)
    {
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] != ' ')
                line.cells.push_back(
                    {static_cast<int>(at), centreOf(static_cast<double>(at)), text[at] == '_',
                     text[at] == '0'});
        }
    }

    void read(const std::string& text, double place)
    {
        symbols.push_back({text, centreOf(place), false, 1});
    }

    void readAll(const std::string& text)
    {
        for (std::size_t at = 0; at < text.size(); ++at)
            read(text.substr(at, 1), static_cast<double>(at));
    }

    std::string text()
    {
        putInCells(symbols, line);
        correctSpaces(symbols, line);
        return textOf(symbols, line);
    }

    static double centreOf(double place) { return 10 * place + 5; }

    TextLine line{{0, 14}, {}, 10, 8, 10, {}};
    std::vector<Symbol> symbols;
};

TEST_F(CellTextTest, HasAsManyUnderscoresAsThePicture)
{
    // The engine reads two underscores in a row as one.
    picture("__init__");
    read("_", 0.5);
    for (const char* letter : {"i", "n", "i", "t"})
        read(letter, 1.0 + static_cast<double>(symbols.size()));
    read("_", 6.5);
    EXPECT_EQ(text(), "__init__");
}

TEST_F(CellTextTest, HasAnUnderscoreWhereThePictureHasIt)
{
    // The engine lets an underscore change places with its neighbour.
    picture("size_t n");
    readAll("siz_et");
    read("n", 7);
    EXPECT_EQ(text(), "size_t n");
}

TEST_F(CellTextTest, HasTheUnderscoresThatTheEngineMissed)
{
    picture("self._name");
    readAll("self.");
    for (const char* letter : {"n", "a", "m", "e"})
        read(letter, 1.0 + static_cast<double>(symbols.size()));
    EXPECT_EQ(text(), "self._name");
}

TEST_F(CellTextTest, TakesAFlatSignForTheUnderscoreThatIsThere)
{
    picture("f._x _y");
    readAll("f..x —");
    symbols.erase(symbols.begin() + 4, symbols.end());
    read("—", 5);
    read("y", 6);
    EXPECT_EQ(text(), "f._x _y");
}

TEST_F(CellTextTest, HasNoUnderscoreThatThePictureLacks)
{
    picture("a b");
    read("a", 0);
    read("_", 0.6);
    read("b", 2);
    EXPECT_EQ(text(), "a b");
}

TEST_F(CellTextTest, HasABlankForEachBlankCellAlone)
{
    picture("_ x   =_");
    read("_", 0);
    read("x", 2);
    read("=", 6);
    symbols.back().spaceBefore = true;
    read("_", 7);
    symbols.back().spaceBefore = true;
    EXPECT_EQ(text(), "_ x   =_");
}

TEST_F(CellTextTest, KeepsASymbolThatHasNoCellOfItsOwn)
{
    picture("ab");
    read("a", 0);
    read("j", 0.5);
    read("b", 1);
    EXPECT_EQ(text(), "ajb");
}

TEST_F(CellTextTest, TakesARoundLetterWithACoreForAZero)
{
    picture("0xO0");
    readAll("OxOO");
    EXPECT_EQ(text(), "0xO0");
}

} // namespace
} // namespace tallowbay::tesseract
