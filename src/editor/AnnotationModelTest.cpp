#include "editor/AnnotationConstants.h"
#include "editor/AnnotationItem.h"
#include "editor/ImagePlacement.h"
#include "editor/ScreenshotRecord.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace tallowbay {
namespace {

TEST(AnnotationTool, HasTheseRawValuesSymbolsAndLabels)
{
    struct Row {
        int rawValue;
        AnnotationTool tool;
        const char* symbol;
        const char* label;
    };
    const std::vector<Row> rows{
        {0, AnnotationTool::highlight, "pencil.tip", "Highlight"},
        {1, AnnotationTool::arrow, "arrow.up.right", "Arrow"},
        {2, AnnotationTool::text, "textformat", "Text"},
        {3, AnnotationTool::blur, "eye.slash", "Blur"},
    };
    ASSERT_EQ(annotationTools.size(), rows.size());
    for (const Row& row : rows) {
        EXPECT_EQ(annotationTools[static_cast<std::size_t>(row.rawValue)], row.tool);
        EXPECT_EQ(annotationToolFromRawValue(row.rawValue), row.tool);
        EXPECT_EQ(rawValue(row.tool), row.rawValue);
        EXPECT_EQ(railSymbol(row.tool), row.symbol);
        EXPECT_EQ(railLabel(row.tool), row.label);
    }
}

TEST(AnnotationTool, IsNotMadeOfAnyOtherRawValue)
{
    for (const int raw : {-1, 4, 7, 1000, -2147483647})
        EXPECT_EQ(annotationToolFromRawValue(raw), std::nullopt) << raw;
}

TEST(AnnotationTool, IsTheHighlightForATagThatBelongsToNone)
{
    EXPECT_EQ(annotationToolForTag(7), AnnotationTool::highlight);
    EXPECT_EQ(annotationToolForTag(-1), AnnotationTool::highlight);
    EXPECT_EQ(annotationToolForTag(3), AnnotationTool::blur);
}

TEST(AnnotationTool, IsUsableAsAKey)
{
    const std::unordered_set<AnnotationTool> tools(annotationTools.begin(), annotationTools.end());
    EXPECT_EQ(tools.size(), 4u);
    EXPECT_TRUE(tools.contains(AnnotationTool::text));
}

TEST(AnnotationItem, GivesBackTheEndsOfAnArrowDrawnFromRightToLeft)
{
    const AnnotationItem item{AnnotationTool::arrow, {{300, 40}, {-120, 25}}, std::nullopt, {}};
    EXPECT_EQ(item.start(), (Point{300, 40}));
    EXPECT_EQ(item.end(), (Point{180, 65}));
}

TEST(AnnotationItem, IsComparedFieldByField)
{
    const AnnotationItem item{AnnotationTool::text, {{1, 2}, {}}, "a", systemRed};
    EXPECT_EQ(item, AnnotationItem(item));
    AnnotationItem other = item;
    other.color = systemBlue;
    EXPECT_NE(item, other);
    other = item;
    other.text.reset();
    EXPECT_NE(item, other);
}

TEST(Palette, HoldsTheseFiveColours)
{
    ASSERT_EQ(swatchColorValues.size(), 5u);
    EXPECT_EQ(swatchColorValues[0], systemYellow);
    EXPECT_EQ(swatchColorValues[1], (Color{0.08, 0.65, 0.28, 1}));
    EXPECT_EQ(swatchColorValues[2], (Color{0.12, 0.38, 0.90, 1}));
    EXPECT_EQ(swatchColorValues[3], (Color{0.85, 0.12, 0.28, 1}));
    EXPECT_EQ(swatchColorValues[4], (Color{0.88, 0.42, 0.02, 1}));
    for (const Color& color : swatchColorValues)
        EXPECT_EQ(color.alpha, 1);
}

TEST(AnnotationConstants, AreThese)
{
    EXPECT_EQ(imageInset, 48);
    EXPECT_EQ(handleRadius, 5);
    EXPECT_EQ(handleHitTolerance, 12);
    EXPECT_EQ(arrowHitTolerance, 10);
    EXPECT_EQ(minimumArrowLength, 8);
    EXPECT_EQ(minimumRectangleSide, 4);
    EXPECT_EQ(annotationFont, (Font{16, FontWeight::semibold}));
    EXPECT_EQ(paddedAnnotationText("a b"), " a b ");
}

TEST(ScreenshotRecord, IsCheckedAndTheFirstOfItsBatchUnlessSaidOtherwise)
{
    const ScreenshotRecord record;
    EXPECT_TRUE(record.checked);
    EXPECT_EQ(record.badgeNumber, 1);
    EXPECT_EQ(record.headerColor, 0u);
    EXPECT_EQ(record.id, 0u) << "of none that stands in the strip";
}

TEST(ImagePlacement, FitsAndCentresAPictureWithinTheInset)
{
    const auto wide = ImagePlacement::fit({1000, 800}, {1808, 100}, 48);
    EXPECT_DOUBLE_EQ(wide.scale, 0.5);
    EXPECT_EQ(wide.imageRect(), (Rect{{48, 375}, {904, 50}}));

    const auto high = ImagePlacement::fit({1000, 800}, {100, 352}, 48);
    EXPECT_DOUBLE_EQ(high.scale, 2);
    EXPECT_EQ(high.imageRect(), (Rect{{400, 48}, {200, 704}}));
}

TEST(ImagePlacement, MapsPointsToTheImageAndBack)
{
    const auto placement = ImagePlacement::fit({1000, 800}, {1808, 100}, 48);
    EXPECT_EQ(placement.toImage(Point{48, 375}), (Point{0, 0}));
    EXPECT_EQ(placement.toImage(Point{952, 425}), (Point{1808, 100}));
    EXPECT_EQ(placement.toCanvas(Point{10, 20}), (Point{53, 385}));
}

TEST(ImagePlacement, KeepsTheSignsOfASize)
{
    const auto placement = ImagePlacement::fit({1000, 800}, {1808, 100}, 48);
    const Rect mapped = placement.toImage(Rect{{148, 400}, {-50, -10}});
    EXPECT_EQ(mapped, (Rect{{200, 50}, {-100, -20}}));
}

TEST(ImagePlacement, IsUnusableWithoutRoomInsideOfTheInset)
{
    EXPECT_TRUE(ImagePlacement::fit({97, 97}, {10, 10}, 48).isUsable());
    EXPECT_FALSE(ImagePlacement::fit({96, 500}, {10, 10}, 48).isUsable());
    EXPECT_FALSE(ImagePlacement::fit({500, 20}, {10, 10}, 48).isUsable());
    EXPECT_FALSE(ImagePlacement::fit({0, 0}, {10, 10}, 48).isUsable());
}

} // namespace
} // namespace tallowbay
