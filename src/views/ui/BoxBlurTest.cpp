#include "views/ui/BoxBlur.h"

#include <gtest/gtest.h>

namespace tallowbay::views {
namespace {

QImage plain(int width, int height, const QColor& color)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

TEST(BoxBlurTest, LeavesAPlainPictureAsItIs)
{
    const QImage image = plain(40, 30, QColor(12, 200, 77));
    EXPECT_EQ(blurredImage(image, 5), image);
}

TEST(BoxBlurTest, LeavesAPictureAloneThatIsToBeBlurredByNothing)
{
    QImage image = plain(5, 5, Qt::black);
    image.setPixelColor(2, 2, Qt::white);
    EXPECT_EQ(blurredImage(image, 0), image);
}

// A step from black to white becomes the curve of a Gaussian: at its deviation from the step 16
// and 84 of 100 parts of the light are there.
TEST(BoxBlurTest, SpreadsAStepByItsDeviationAcrossAndDown)
{
    constexpr int deviation = 10;
    QImage across = plain(200, 40, Qt::black);
    QImage down = plain(40, 200, Qt::black);
    for (int i = 100; i < 200; ++i)
        for (int j = 0; j < 40; ++j) {
            across.setPixelColor(i, j, Qt::white);
            down.setPixelColor(j, i, Qt::white);
        }
    const QImage wide = blurredImage(across, deviation);
    const QImage high = blurredImage(down, deviation);
    for (const auto& [place, part] : {std::pair(90, 0.16), std::pair(110, 0.84)}) {
        EXPECT_NEAR(wide.pixelColor(place, 20).redF(), part, 0.03);
        EXPECT_NEAR(high.pixelColor(20, place).greenF(), part, 0.03);
    }
    EXPECT_EQ(wide.pixelColor(40, 20), QColor(Qt::black));
    EXPECT_EQ(wide.pixelColor(199, 20), QColor(Qt::white)) << "the edges go on";
}

TEST(BoxBlurTest, TakesAPictureThatIsSmallerThanTheBlur)
{
    EXPECT_EQ(blurredImage(plain(1, 1, Qt::red), 50), plain(1, 1, Qt::red));
    EXPECT_TRUE(blurredImage(QImage(), 50).isNull());
}

} // namespace
} // namespace tallowbay::views
