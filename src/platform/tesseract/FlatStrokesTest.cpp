#include "platform/tesseract/FlatStrokes.h"

#include "platform/tesseract/LineFinder.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

// Strokes of two rows half way up letters ten high.
class FlatStrokesTest : public testing::Test {
protected:
    static constexpr Span dashRows{19, 21};

    void fill(Span columns, Span rows, std::uint8_t value = 255)
    {
        for (int y = rows.begin; y < rows.end; ++y)
            std::fill(ink.row(y) + columns.begin, ink.row(y) + columns.end, value);
    }

    std::vector<FlatStroke> strokes()
    {
        line.runs = inkColumns(ink, {{0, ink.size.width}, line.rows});
        return flatStrokesOf(ink, line);
    }

    Plane ink{{60, 40}};
    TextLine line{{10, 30}, {}, 25, 10, 0, {}};
};

TEST_F(FlatStrokesTest, AreAsLongAsTheirInkWithItsSoftEnds)
{
    fill({10, 16}, dashRows);
    fill({9, 10}, dashRows, 51);
    fill({16, 17}, dashRows, 64);
    ASSERT_EQ(strokes().size(), 1u);
    EXPECT_NEAR(strokes()[0].length, 6.45, 0.01);
    EXPECT_EQ(strokes()[0].middle(), 13);
    EXPECT_TRUE(strokes()[0].even);
}

TEST_F(FlatStrokesTest, EndWhereALetterBegins)
{
    fill({4, 10}, {15, 25});
    fill({10, 18}, dashRows);
    fill({18, 24}, {15, 25});
    ASSERT_EQ(strokes().size(), 1u);
    EXPECT_EQ(strokes()[0].length, 8);
}

TEST_F(FlatStrokesTest, ShareTheInkOfANarrowGapWithTheLetterBesideIt)
{
    fill({10, 18}, dashRows);
    fill({18, 19}, {15, 25}, 60);
    fill({19, 24}, {15, 25});
    ASSERT_EQ(strokes().size(), 1u);
    EXPECT_LT(strokes()[0].length, 8.3);
}

TEST_F(FlatStrokesTest, AreUnevenWhereTwoOfThemTouch)
{
    fill({10, 16}, dashRows);
    fill({16, 17}, dashRows, 120);
    fill({17, 23}, dashRows);
    ASSERT_EQ(strokes().size(), 1u);
    EXPECT_FALSE(strokes()[0].even);
}

TEST_F(FlatStrokesTest, AreNeitherOnTheLineNorHighNorThick)
{
    fill({10, 16}, {23, 25});
    fill({20, 26}, {11, 13});
    fill({30, 36}, {17, 22});
    fill({40, 46}, {16, 17});
    fill({40, 46}, {21, 22});
    EXPECT_TRUE(strokes().empty());
}

TEST_F(FlatStrokesTest, TellHowWideALetterIs)
{
    fill({10, 16}, {15, 25});
    fill({16, 17}, {15, 25}, 51);
    line.runs = inkColumns(ink, {{0, ink.size.width}, line.rows});
    EXPECT_NEAR(inkWidth(ink, line, line.runs.at(0)), 6.2, 0.01);
}

} // namespace
} // namespace tallowbay::tesseract
