#include "platform/tesseract/Dashes.h"

#include "platform/tesseract/Ink.h"
#include "platform/tesseract/TestText.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

std::string dashesOf(const std::string& text, const TextDrawing::Look& look)
{
    Plane ink = inkOf(*TextDrawing::draw({"The sooner we are more", text}, look));
    const int letter = letterHeight(ink);
    levelContrast(ink, letter);
    std::string dashes;
    for (const TextLine& line : findTextLines(ink, letter)) {
        for (const Dash& dash : line.dashes)
            dashes += dash.text;
    }
    return dashes;
}

const std::vector<const char*> typefaces{
    "DejaVu Sans", "Noto Sans", "Liberation Sans", "Liberation Serif"};

TEST(DashesTest, AreToldByTheirLength)
{
    for (const char* typeface : typefaces) {
        for (const int pixels : {13, 16, 18})
            EXPECT_EQ(dashesOf("so-so rain – or snow — now", {typeface, pixels}), "-–—")
                << typeface << " " << pixels;
    }
}

TEST(DashesTest, AreToldWhereTheyTouchTheirNeighbours)
{
    for (const char* typeface : typefaces)
        EXPECT_EQ(dashesOf("none 1998–2003 on—on", {typeface, 14, 0xFFD4D4D4u, 0xFF1E1E1Eu}), "–—")
            << typeface;
}

TEST(DashesTest, AreNotTwoHyphensThatTouch)
{
    for (const char* typeface : typefaces) {
        for (const int pixels : {10, 11, 12, 14})
            EXPECT_EQ(
                dashesOf("on --version and --on", {typeface, pixels}).find("–"), std::string::npos)
                << typeface << " " << pixels;
    }
}

TEST(DashesTest, AreOnlyLongOnesWhereAllCharactersHaveOneWidth)
{
    EXPECT_EQ(dashesOf("some-one was here – or now", {"DejaVu Sans Mono", 14}), "–");
}

} // namespace
} // namespace tallowbay::tesseract
