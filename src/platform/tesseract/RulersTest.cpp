#include "platform/tesseract/Rulers.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

// A line of cells ten columns wide, each with a stroke of its own height.
class RulersTest : public testing::Test {
protected:
    void show(const std::string& text)
    {
        ink = Plane({10 * static_cast<int>(text.size()), 20});
        line = {{2, 14}, {}, 12, 8, 10, {}};
        for (std::size_t at = 0; at < text.size(); ++at) {
            const int left = 10 * static_cast<int>(at);
            if (text[at] == ' ')
                continue;
            for (int y = 4; y < 12; ++y)
                ink.row(y)[left + 4] = ink.row(y)[left + 5] = 255;
            line.runs.push_back({left + 4, left + 6});
            line.cells.push_back({static_cast<int>(at), left + 5.0});
            shapes.push_back(text[at]);
        }
    }

    Plane ink{{0, 0}};
    TextLine line;
    std::vector<int> shapes;
};

TEST_F(RulersTest, AreCutToAFewCells)
{
    show("/**********/");
    const auto less = shortened(ink, line, shapes);
    EXPECT_EQ(less.cut, 60);
    EXPECT_EQ(less.ink.size.width, 60);
    ASSERT_EQ(less.line.cells.size(), 6u);
    EXPECT_EQ(less.line.cells.back().centre, 55);
    EXPECT_EQ(less.line.runs.size(), 6u);
    EXPECT_EQ(less.line.columns().end, 56);
}

TEST_F(RulersTest, HaveTheirColumnsInTheWholeLine)
{
    show("/**********/");
    const auto less = shortened(ink, line, shapes);
    EXPECT_EQ(less.wholeColumn(5), 5);
    EXPECT_EQ(less.wholeColumn(25), 25);
    EXPECT_EQ(less.wholeColumn(35), 95);
    EXPECT_EQ(less.wholeColumn(55), 115);
}

TEST_F(RulersTest, AreLeftIfShortOrBroken)
{
    show("/*****/");
    EXPECT_EQ(shortened(ink, line, shapes).cut, 0);
    line.cells.clear();
    shapes.clear();
    show("**** **** ****");
    EXPECT_EQ(shortened(ink, line, shapes).cut, 0);
}

} // namespace
} // namespace tallowbay::tesseract
