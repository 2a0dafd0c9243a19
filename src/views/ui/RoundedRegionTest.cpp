#include "views/ui/RoundedRegion.h"

#include <gmock/gmock.h>

#include <numbers>
#include <numeric>

using testing::ElementsAre;
using testing::IsEmpty;

namespace tallowbay::views {
namespace {

int areaOf(const PixelRegion& region)
{
    return std::accumulate(region.begin(), region.end(), 0, [](int sum, const PixelRect& part) {
        return sum + part.width * part.height;
    });
}

TEST(RoundedRegionTest, IsTheWholeRectangleWithoutARadius)
{
    EXPECT_THAT(roundedRegion({7, 3}, 0), ElementsAre(PixelRect{0, 0, 7, 3}));
}

TEST(RoundedRegionTest, HasThePixelsWhoseMiddleLiesWithinTheCorner)
{
    // A circle of radius 4: the middles of its rows lie 3.5, 2.5, 1.5 and 0.5 from its own.
    EXPECT_THAT(
        roundedRegion({10, 9}, 4),
        ElementsAre(
            PixelRect{2, 0, 6, 1}, PixelRect{1, 1, 8, 1}, PixelRect{0, 2, 10, 5},
            PixelRect{1, 7, 8, 1}, PixelRect{2, 8, 6, 1}));
}

TEST(RoundedRegionTest, CoversTheAreaOfTheRoundedRectangle)
{
    for (const double radius : {12.0, 18.0, 24.0, 36.0}) {
        const int corners = 480 * 96 - areaOf(roundedRegion({480, 96}, radius));
        EXPECT_NEAR(corners, (4 - std::numbers::pi) * radius * radius, radius / 2) << radius;
    }
}

TEST(RoundedRegionTest, TakesNoMoreThanHalfTheShorterSideForARadius)
{
    EXPECT_EQ(roundedRegion({20, 8}, 100), roundedRegion({20, 8}, 4));
}

TEST(RoundedRegionTest, IsEmptyWithoutASize)
{
    EXPECT_THAT(roundedRegion({0, 5}, 3), IsEmpty());
    EXPECT_THAT(roundedRegion({5, 0}, 3), IsEmpty());
}

} // namespace
} // namespace tallowbay::views
