#include "views/editor/EditorLayout.h"

#include <gtest/gtest.h>

namespace tallowbay::views {
namespace {

const QSize rail(56, 256);
const QSize swatches(132, 32);

class EditorLayoutTest : public testing::TestWithParam<QSize> {
protected:
    const QRect window{QPoint(), GetParam()};
    const EditorLayout layout = EditorLayout::of(GetParam(), rail, swatches);
};

TEST_P(EditorLayoutTest, HasRoomForEverything)
{
    for (const QRect& part : {layout.canvasCard, layout.toolRail, layout.swatchCard, layout.strip})
        EXPECT_TRUE(window.contains(part));
    EXPECT_GE(layout.canvasCard.height(), 420);
    EXPECT_GE(layout.canvasCard.width(), 960);
}

TEST_P(EditorLayoutTest, LaysNothingOverAnother)
{
    EXPECT_LT(layout.toolRail.right(), layout.canvasCard.left());
    EXPECT_LT(layout.canvasCard.bottom(), layout.strip.top());
    EXPECT_TRUE(layout.canvasCard.contains(layout.swatchCard)) << "but the colours";
}

TEST_P(EditorLayoutTest, StandsInTheMiddle)
{
    EXPECT_NEAR(layout.canvasCard.center().x(), window.center().x(), 1);
    EXPECT_NEAR(layout.swatchCard.center().x(), window.center().x(), 1);
    EXPECT_NEAR(layout.toolRail.center().y(), layout.canvasCard.center().y(), 1);
    EXPECT_EQ(layout.strip.width(), window.width());
}

INSTANTIATE_TEST_SUITE_P(
    Screens, EditorLayoutTest,
    testing::Values(
        QSize(1280, 720), QSize(1366, 768), QSize(1440, 900), QSize(1920, 1080), QSize(2560, 1440),
        QSize(3440, 1440), QSize(3840, 2160), QSize(1280, 2000)));

TEST(EditorLayoutTest, GivesTheCanvasTwoThirdsOfAWideScreen)
{
    const auto layout = EditorLayout::of({1920, 1080}, rail, swatches);
    EXPECT_EQ(layout.canvasCard.width(), 1280);
    EXPECT_EQ(layout.canvasCard.top(), 56);
}

} // namespace
} // namespace tallowbay::views
