#include "platform/tesseract/TextLines.h"

#include "platform/tesseract/Ink.h"
#include "platform/tesseract/TestText.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

std::vector<TextLine> linesOf(const Image& image)
{
    Plane ink = inkOf(*image);
    const int letter = letterHeight(ink);
    levelContrast(ink, letter);
    return findTextLines(ink, letter);
}

TEST(TextLinesTest, AreFoundFromTopToBottom)
{
    const auto lines = linesOf(TextDrawing::draw({"Many years ago", "there was a house"}));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_LT(lines[0].rows.end, lines[1].rows.begin + 1);
}

TEST(TextLinesTest, KnowTheHeightOfASmallLetter)
{
    const auto lines = linesOf(TextDrawing::draw({"Many years ago"}, {"DejaVu Sans", 20}));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NEAR(lines[0].smallLetter, 11, 1);
}

TEST(TextLinesTest, KnowWhetherAllCharactersAreOfOneWidth)
{
    const std::vector<std::string> text{"while (index < count)", "    total += list[index];"};
    EXPECT_NEAR(linesOf(TextDrawing::draw(text, {"DejaVu Sans Mono", 15})).at(0).pitch, 9, 0.3);
    EXPECT_EQ(linesOf(TextDrawing::draw(text, {"DejaVu Sans", 15})).at(0).pitch, 0);
}

// A brace reaches below the others, a quote ends above them.
TEST(TextLinesTest, KnowTheirBaselineWithoutALetter)
{
    const auto lines = linesOf(TextDrawing::draw(
        {"while (index < count) {", "    total += list[index];", "};", "\"\"\"", "return totals;"},
        {"DejaVu Sans Mono", 15}));
    ASSERT_EQ(lines.size(), 5u);
    for (std::size_t at = 1; at < lines.size(); ++at) {
        EXPECT_NEAR(lines[at].baseline, lines[0].baseline + 24 * static_cast<int>(at), 1) << at;
        EXPECT_GT(lines[at].pitch, 0) << at;
    }
}

TEST(TextLinesTest, ComeSideBySideFromLeftToRightIfTheyAreNotLevel)
{
    QImage picture(560, 140, QImage::Format_RGB32);
    picture.fill(0xFFFFFFFFu);
    TextDrawing::drawInto(picture, {"Left above", "Left between", "Left below"}, {}, 10);
    QImage right(300, 140, QImage::Format_RGB32);
    right.fill(0xFFFFFFFFu);
    TextDrawing::drawInto(right, {"Right above", "Right between", "Right below"}, {}, 20);
    QPainter(&picture).drawImage(240, 0, right);
    const auto lines = linesOf(TextDrawing::bitmapOf(picture));
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_LT(lines[2].columns().end, lines[3].columns().begin);
    EXPECT_LT(lines[0].rows.begin, lines[1].rows.begin);
    EXPECT_LT(lines[3].rows.begin, lines[4].rows.begin);
}

TEST(TextLinesTest, GoAcrossTheColumnsOfATable)
{
    QImage picture(560, 140, QImage::Format_RGB32);
    picture.fill(0xFFFFFFFFu);
    TextDrawing::drawInto(picture, {"North", "South", "West", "East"}, {}, 10);
    QImage right(200, 140, QImage::Format_RGB32);
    right.fill(0xFFFFFFFFu);
    TextDrawing::drawInto(right, {"12.5", "7.25", "310", "42"}, {}, 10);
    QPainter(&picture).drawImage(240, 0, right);
    EXPECT_EQ(linesOf(TextDrawing::bitmapOf(picture)).size(), 4u);
}

TEST(TextLinesTest, KnowTheirFullStopsHyphensAndUnderscores)
{
    const auto lines = linesOf(TextDrawing::draw({"a_b x - 3. c"}, {"DejaVu Sans", 18}));
    ASSERT_EQ(lines.size(), 1u);
    std::string marks;
    for (const Mark& mark : lines[0].marks)
        marks += mark.character;
    EXPECT_EQ(marks, "_-.");
}

} // namespace
} // namespace tallowbay::tesseract
