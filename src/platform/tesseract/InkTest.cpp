#include "platform/tesseract/Ink.h"

#include "platform/tesseract/Resample.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

void fill(Bitmap& bitmap, int left, int top, int width, int height, std::uint32_t colour)
{
    for (int y = top; y < top + height; ++y)
        std::fill_n(bitmap.row(y) + left, width, colour);
}

Bitmap ground(PixelSize size, std::uint32_t colour)
{
    Bitmap bitmap(size);
    fill(bitmap, 0, 0, size.width, size.height, colour);
    return bitmap;
}

TEST(InkTest, IsNoneOnAnEvenGround)
{
    const Plane ink = inkOf(ground({60, 40}, 0xFF336699u));
    EXPECT_EQ(ink.values, std::vector<std::uint8_t>(60 * 40, 0));
}

TEST(InkTest, IsAsStrongOnADarkGroundAsOnALightOne)
{
    Bitmap bitmap = ground({100, 80}, 0xFFFFFFFFu);
    fill(bitmap, 0, 0, 100, 40, 0xFF202020u);
    fill(bitmap, 20, 10, 2, 8, 0xFFC0C0C0u); // light on dark
    fill(bitmap, 20, 60, 2, 8, 0xFF5F5F5Fu); // dark on light
    const Plane ink = inkOf(bitmap);
    EXPECT_EQ(ink.row(12)[20], 160);
    EXPECT_EQ(ink.row(62)[20], 160);
    EXPECT_EQ(ink.row(12)[30], 0);
    EXPECT_EQ(ink.row(62)[30], 0);
    EXPECT_EQ(ink.row(39)[50], 0); // where the grounds meet
    EXPECT_EQ(ink.row(40)[50], 0);
}

TEST(InkTest, FollowsAGroundThatChangesGently)
{
    Bitmap bitmap(PixelSize{64, 128});
    for (int y = 0; y < 128; ++y)
        fill(bitmap, 0, y, 64, 1, 0xFF000000u | static_cast<std::uint32_t>(y + 64) * 0x010101u);
    const Plane ink = inkOf(bitmap);
    EXPECT_EQ(*std::max_element(ink.values.begin(), ink.values.end()), 0);
}

TEST(InkTest, TakesOutLongThinRulesAndKeepsShortStrokes)
{
    Plane ink({200, 40});
    std::fill_n(ink.row(10) + 20, 150, std::uint8_t{200});
    std::fill_n(ink.row(30) + 20, 10, std::uint8_t{200});
    removeRules(ink, 6);
    EXPECT_EQ(ink.row(10)[60], 0);
    EXPECT_EQ(ink.row(30)[22], 200);
}

TEST(InkTest, LetsAnUnderlineGoFromUnderATail)
{
    Plane ink({200, 40});
    std::fill_n(ink.row(20) + 20, 150, std::uint8_t{200});
    for (int y = 12; y < 26; ++y)
        ink.row(y)[50] = 200;
    removeRules(ink, 6);
    EXPECT_EQ(ink.row(20)[50], 200);
    EXPECT_EQ(ink.row(20)[80], 0);
}

TEST(InkTest, MeasuresNoLettersWhereNoneAre)
{
    EXPECT_EQ(letterHeight(Plane({50, 50})), 0);
}

TEST(InkTest, MakesFaintWordsAsStrongAsOthers)
{
    Plane ink({300, 30});
    for (int y = 10; y < 20; ++y) {
        ink.row(y)[10] = 200;
        ink.row(y)[290] = 40;
    }
    levelContrast(ink, 8);
    EXPECT_EQ(ink.row(12)[10], 255);
    EXPECT_EQ(ink.row(12)[290], 255);
}

TEST(ResampleTest, KeepsAnEvenPlaneEven)
{
    const Plane grown = resampled(Plane({7, 5}, 90), {31, 17});
    EXPECT_EQ(grown.values, std::vector<std::uint8_t>(31 * 17, 90));
    const Plane shrunk = resampled(Plane({31, 17}, 90), {7, 5});
    EXPECT_EQ(shrunk.values, std::vector<std::uint8_t>(7 * 5, 90));
}

} // namespace
} // namespace tallowbay::tesseract
