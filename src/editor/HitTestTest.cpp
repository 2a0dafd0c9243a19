#include "editor/CanvasFixture.h"

namespace tallowbay {
namespace {

using namespace test;

class HitTestTest : public testing::Test {
protected:
    bool hits(const AnnotationItem& item, Point point)
    {
        return hitTestAnnotation({item}, point, measurer).has_value();
    }
    static std::optional<ResizeHandle> handleAt(const AnnotationItem& item, Point point)
    {
        const auto hit = hitTestResizeHandle({item}, point);
        return hit ? std::optional(hit->handle) : std::nullopt;
    }

    headless::HeadlessTextMeasurer measurer;
};

TEST_F(HitTestTest, FindsARectangleByItsEdgesWhateverTheSignOfItsSize)
{
    for (const Rect rect :
         {Rect{{10, 20}, {30, 40}}, Rect{{40, 60}, {-30, -40}}, Rect{{40, 20}, {-30, 40}}}) {
        for (const auto& item : {highlightAt(rect), blurAt(rect)}) {
            EXPECT_TRUE(hits(item, {10, 20}));
            EXPECT_TRUE(hits(item, {39.9, 59.9}));
            EXPECT_FALSE(hits(item, {9.9, 30}));
            EXPECT_FALSE(hits(item, {40, 30}));
            EXPECT_FALSE(hits(item, {20, 60}));
        }
    }
}

TEST_F(HitTestTest, FindsAnArrowWithinLessThan10Points)
{
    const auto item = arrowAt({{100, 100}, {-50, 0}});
    EXPECT_TRUE(hits(item, {75, 109.9}));
    EXPECT_FALSE(hits(item, {75, 110}));
    EXPECT_TRUE(hits(item, {109.9, 100}));
    EXPECT_FALSE(hits(item, {110, 100}));
    EXPECT_TRUE(hits(item, {44, 92.1}));
    EXPECT_FALSE(hits(item, {44, 92}));
}

TEST_F(HitTestTest, FindsAnArrowWithoutLengthAroundItsPoint)
{
    const auto item = arrowAt({{100, 100}, {0, 0}});
    EXPECT_TRUE(hits(item, {106, 107.9}));
    EXPECT_FALSE(hits(item, {106, 108}));
}

TEST_F(HitTestTest, FindsATextByItsMeasuredSizeWithTheSpaces)
{
    const auto item = textAt({100, 50}, "abc"); // five characters of 8 by 20
    EXPECT_TRUE(hits(item, {100, 50}));
    EXPECT_TRUE(hits(item, {139.9, 69.9}));
    EXPECT_FALSE(hits(item, {140, 60}));
    EXPECT_FALSE(hits(item, {120, 70}));
    EXPECT_FALSE(hits(item, {120, 49.9}));
}

TEST_F(HitTestTest, FindsNoTextThatIsEmptyOrAbsent)
{
    EXPECT_FALSE(hits(textAt({100, 50}, ""), {101, 51}));
    EXPECT_FALSE(hits({AnnotationTool::text, {{100, 50}, {}}, std::nullopt, {}}, {101, 51}));
}

TEST_F(HitTestTest, NamesTheCornerThatIsNear)
{
    const auto item = highlightAt({{100, 100}, {200, 80}});
    EXPECT_EQ(handleAt(item, {95, 95}), ResizeHandle::rectBottomLeft);
    EXPECT_EQ(handleAt(item, {305, 95}), ResizeHandle::rectBottomRight);
    EXPECT_EQ(handleAt(item, {95, 185}), ResizeHandle::rectTopLeft);
    EXPECT_EQ(handleAt(item, {305, 185}), ResizeHandle::rectTopRight);
    EXPECT_EQ(handleAt(item, {111.9, 100}), ResizeHandle::rectBottomLeft);
    EXPECT_EQ(handleAt(item, {112, 100}), std::nullopt);
    EXPECT_EQ(handleAt(item, {200, 140}), std::nullopt);
}

TEST_F(HitTestTest, NamesTheCornersOfTheSpannedAreaWhenTheSizeIsNegative)
{
    const auto item = blurAt({{300, 180}, {-200, -80}});
    EXPECT_EQ(handleAt(item, {100, 100}), ResizeHandle::rectBottomLeft);
    EXPECT_EQ(handleAt(item, {300, 180}), ResizeHandle::rectTopRight);
}

TEST_F(HitTestTest, TriesTheCornersOfATinyRectangleInAFixedOrder)
{
    const auto item = highlightAt({{100, 100}, {6, 6}});
    EXPECT_EQ(handleAt(item, {103, 103}), ResizeHandle::rectBottomLeft);
    EXPECT_EQ(handleAt(item, {111.9, 103}), ResizeHandle::rectBottomRight);
    EXPECT_EQ(handleAt(item, {97, 114}), ResizeHandle::rectTopLeft);
}

TEST_F(HitTestTest, PrefersTheTailOfAShortArrow)
{
    const auto item = arrowAt({{100, 100}, {10, 0}});
    EXPECT_EQ(handleAt(item, {105, 100}), ResizeHandle::arrowStart);
    EXPECT_EQ(handleAt(item, {113, 100}), ResizeHandle::arrowEnd);
}

TEST_F(HitTestTest, FindsNoHandleFarFromAnItem)
{
    for (const auto& item : {arrowAt({{100, 100}, {50, 0}}), highlightAt({{100, 100}, {50, 50}})})
        for (const Point point : {Point{0, 0}, {125, 112}, {200, 200}})
            EXPECT_EQ(handleAt(item, point), std::nullopt) << point.x;
}

TEST_F(HitTestTest, FindsNoHandleOnAText)
{
    EXPECT_EQ(handleAt(textAt({100, 100}, "abc"), {100, 100}), std::nullopt);
}

TEST_F(HitTestTest, PrefersTheTopmostItemForHandlesToo)
{
    const std::vector<AnnotationItem> items{
        highlightAt({{100, 100}, {50, 50}}), arrowAt({{105, 105}, {90, 90}}),
        textAt({100, 100}, "abc")};
    EXPECT_EQ(hitTestResizeHandle(items, {102, 102}), (HandleHit{1, ResizeHandle::arrowStart}));
    EXPECT_EQ(hitTestAnnotation(items, {102, 102}, measurer), 2u);
}

TEST_F(HitTestTest, ResizesByThisTable)
{
    struct Row {
        ResizeHandle handle;
        Rect expected;
    };
    // Edges at 10 and 40, 20 and 80; the arrow runs from (40, 20) to (10, 80).
    const Rect old{{40, 20}, {-30, 60}};
    const std::vector<Row> rows{
        {ResizeHandle::arrowStart, {{5, 7}, {5, 73}}},
        {ResizeHandle::arrowEnd, {{40, 20}, {-35, -13}}},
        {ResizeHandle::rectTopLeft, {{5, 20}, {35, -13}}},
        {ResizeHandle::rectTopRight, {{10, 20}, {-5, -13}}},
        {ResizeHandle::rectBottomLeft, {{5, 7}, {35, 73}}},
        {ResizeHandle::rectBottomRight, {{10, 7}, {-5, 73}}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(resizedRect(old, row.handle, {5, 7}), row.expected)
            << static_cast<int>(row.handle);
    // The same edges, with a negative height; an arrow there runs from (10, 80) to (40, 20).
    const Rect down{{10, 80}, {30, -60}};
    for (const Row& row : std::vector(rows.begin() + 2, rows.end())) // without the arrow's
        EXPECT_EQ(resizedRect(down, row.handle, {5, 7}), row.expected);
    EXPECT_EQ(resizedRect(down, ResizeHandle::arrowStart, {5, 7}), (Rect{{5, 7}, {35, 13}}));
    EXPECT_EQ(resizedRect(down, ResizeHandle::arrowEnd, {5, 7}), (Rect{{10, 80}, {-5, -73}}));
}

TEST_F(HitTestTest, StopsTheProcessForAHandleThatDoesNotExist)
{
    EXPECT_DEATH(resizedRect({}, static_cast<ResizeHandle>(6), {0, 0}), "no such resize handle");
}

} // namespace
} // namespace tallowbay
