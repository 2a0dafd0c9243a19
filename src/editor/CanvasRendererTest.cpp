#include "editor/CanvasRenderer.h"
#include "editor/CanvasFixture.h"

#include <cmath>
#include <limits>

namespace tallowbay {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

const std::string yellow35 = "color(1 0.8 0 0.35)";
const std::string selectionStroke = "color(0.3 0.6 1 0.8) width 1.5";

class CanvasRendererTest : public CanvasTest {
protected:
    // What one item looks like, with these decorations.
    Lines drawnItem(const AnnotationItem& item, bool selected = false, bool active = false)
    {
        CanvasState state;
        state.annotations = {item};
        if (selected)
            state.selectedAnnotationIndex = 0;
        if (active)
            state.hoveredIndex = 0;
        return drawnState(state);
    }
    Lines drawnState(const CanvasState& state, std::optional<LivePreview> preview = {})
    {
        headless::RecordingGraphics context;
        drawCanvas(context, state, preview);
        return context.lines;
    }
    Lines drawnLive(AnnotationTool tool, Rect live, std::optional<Point> dragStart = Point{10, 20})
    {
        CanvasState state;
        state.liveRect = live;
        state.dragStart = dragStart;
        return drawnState(state, LivePreview{tool, systemYellow});
    }
};

std::string handle(const std::string& corner, const std::string& color)
{
    return "oval(" + corner + " 10 10) color(" + color + ")";
}
Lines handlesAt(const Lines& corners, const std::string& color)
{
    Lines lines;
    for (const auto& corner : corners) {
        lines.push_back("fill " + handle(corner, "1 1 1 1"));
        lines.push_back("stroke " + handle(corner, color) + " width 1.5");
    }
    return lines;
}
const Lines blueHandles = handlesAt({"5 15", "105 15", "5 65", "105 65"}, "0 0.478 1 1");
Lines operator+(Lines a, const Lines& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TEST_F(CanvasRendererTest, DrawsTheBackdropExactlyUnderTheImageAndThenTheImage)
{
    EXPECT_THAT(
        drawn(),
        ElementsAre(
            "fill roundedRect(48 48 400 300 radius 8) color(0.05 0.05 0.05 0.85)",
            "image 200x150 rect(48 48 400 300)"));
}

TEST_F(CanvasRendererTest, ScalesALargeImageDown)
{
    canvas.setBackgroundImage(std::make_shared<Bitmap>(PixelSize{800, 300}));
    EXPECT_THAT(
        drawn(),
        ElementsAre(
            "fill roundedRect(48 123 400 150 radius 8) color(0.05 0.05 0.05 0.85)",
            "image 800x300 rect(48 123 400 150)"));
}

TEST_F(CanvasRendererTest, DrawsNoImageInACanvasWithoutRoomForIt)
{
    canvas.setSize({80, 80});
    EXPECT_THAT(drawn(), IsEmpty());
}

TEST_F(CanvasRendererTest, DrawsItemsAndPreviewWithoutABackgroundImage)
{
    CanvasState state;
    state.annotations = {highlightAt({{1, 2}, {3, 4}})};
    state.liveRect = Rect{{5, 6}, {7, 8}};
    EXPECT_EQ(drawnState(state, LivePreview{AnnotationTool::highlight, systemYellow}).size(), 3u);
}

TEST_F(CanvasRendererTest, DrawsItemsFromTheFirstToTheLast)
{
    canvas.setAnnotations(
        {highlightAt({{1, 2}, {3, 4}}), textAt({5, 6}, "t"), highlightAt({{7, 8}, {9, 10}})});
    EXPECT_THAT(
        drawnItems(),
        ElementsAre(
            HasSubstr("fill rect(1 2 3 4)"), HasSubstr("text"), HasSubstr("fill rect(7 8 9 10)")));
}

TEST_F(CanvasRendererTest, DrawsLaterItemsOverTheDecorationsOfLowerOnes)
{
    const AnnotationItem above = highlightAt({{30, 30}, {20, 20}}, systemRed);
    for (const AnnotationItem& below :
         {highlightAt({{10, 20}, {100, 50}}), blurAt({{10, 20}, {100, 50}}),
          arrowAt({{10, 20}, {100, 50}}), textAt({10, 20}, "a b")}) {
        CanvasState state;
        state.annotations = {below, above};
        state.selectedAnnotationIndex = 0;
        state.hoveredIndex = 0;
        EXPECT_EQ(drawnState(state), drawnItem(below, true, true) + drawnItem(above));
    }
}

TEST_F(CanvasRendererTest, LeavesTheCompositingOperationOfTheContextAlone)
{
    canvas.setAnnotations({highlightAt({{1, 2}, {3, 4}}), blurAt({{1, 2}, {3, 4}})});
    headless::RecordingGraphics context;
    context.setCompositingOperation(CompositingOperation::copy);
    canvas.draw(context);
    EXPECT_EQ(context.compositingOperation(), CompositingOperation::copy);
    EXPECT_THAT(context.lines, testing::Not(testing::Contains("compositing sourceOver")));
}

// Highlights

TEST_F(CanvasRendererTest, FillsAHighlightWithItsColourAtAlpha035)
{
    EXPECT_THAT(
        drawnItem(highlightAt({{10, 20}, {100, 50}})),
        ElementsAre("fill rect(10 20 100 50) " + yellow35));
    EXPECT_THAT(
        drawnItem(highlightAt({{10, 20}, {100, 50}}, {0.1, 0.2, 0.3, 0.9})),
        ElementsAre("fill rect(10 20 100 50) color(0.1 0.2 0.3 0.35)"));
}

TEST_F(CanvasRendererTest, OutlinesASelectedHighlight)
{
    EXPECT_THAT(
        drawnItem(highlightAt({{10, 20}, {100, 50}}), true),
        ElementsAre(
            "fill rect(10 20 100 50) " + yellow35, "stroke rect(8 18 104 54) " + selectionStroke));
}

TEST_F(CanvasRendererTest, ShowsBlueHandlesOnAnActiveHighlight)
{
    EXPECT_EQ(
        drawnItem(highlightAt({{10, 20}, {100, 50}}), false, true),
        Lines{"fill rect(10 20 100 50) " + yellow35} + blueHandles);
}

TEST_F(CanvasRendererTest, DrawsTheOutlineBeforeTheHandles)
{
    const Lines expected{
        "fill rect(10 20 100 50) " + yellow35, "stroke rect(8 18 104 54) " + selectionStroke};
    EXPECT_EQ(drawnItem(highlightAt({{10, 20}, {100, 50}}), true, true), expected + blueHandles);
}

TEST_F(CanvasRendererTest, DrawsAHighlightOfNegativeSizeLikeTheAreaItSpans)
{
    const auto expected = drawnItem(highlightAt({{10, 20}, {100, 50}}), true, true);
    for (const Rect rect :
         {Rect{{110, 20}, {-100, 50}}, Rect{{10, 70}, {100, -50}}, Rect{{110, 70}, {-100, -50}}})
        EXPECT_EQ(drawnItem(highlightAt(rect), true, true), expected);
}

// Arrows

std::string number(double value)
{
    std::ostringstream out;
    out << value + 0.0;
    return out.str();
}
std::string headOf(Point start, Point end, double side)
{
    const double angle = std::atan2(end.y - start.y, end.x - start.x);
    std::string text = "polygon(" + number(end.x) + " " + number(end.y);
    for (const double sign : {-1.0, 1.0}) {
        const double direction = angle + sign * std::acos(-1.0) / 6;
        text += ", " + number(end.x - side * std::cos(direction)) + " "
            + number(end.y - side * std::sin(direction));
    }
    return text + ")";
}

TEST_F(CanvasRendererTest, DrawsAnArrowAsARoundLineAndAFilledHead)
{
    EXPECT_THAT(
        drawnItem(arrowAt({{10, 20}, {100, 0}}, systemRed)),
        ElementsAre(
            "stroke line(10 20, 110 20) color(1 0.231 0.188 1) width 2.5 round",
            "fill polygon(110 20, 97.8756 27, 97.8756 13) color(1 0.231 0.188 1)"));
}

TEST_F(CanvasRendererTest, TurnsTheArrowHeadWithTheArrow)
{
    for (const Size vector : {Size{30, 40}, Size{-30, 40}, Size{-30, -40}, Size{0, -5}}) {
        const Point end{100 + vector.width, 100 + vector.height};
        const auto lines = drawnItem(arrowAt({{100, 100}, vector}));
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_EQ(lines[1], "fill " + headOf({100, 100}, end, 14) + " color(1 0.8 0 1)");
    }
}

TEST_F(CanvasRendererTest, ShowsRedHandlesAtBothEndsOfAnActiveArrowOnly)
{
    const auto plain = drawnItem(arrowAt({{10, 20}, {-60, 30}}));
    EXPECT_EQ(drawnItem(arrowAt({{10, 20}, {-60, 30}}), true), plain) << "no selection outline";
    EXPECT_EQ(
        drawnItem(arrowAt({{10, 20}, {-60, 30}}), true, true),
        plain + handlesAt({"5 15", "-55 45"}, "1 0.231 0.188 1"));
}

// Texts

const std::string textLine = "text \" a b \" at(10 20) size 16 semibold color(1 0.8 0 1) "
                             "background(0 0 0 0.6)";

TEST_F(CanvasRendererTest, DrawsATextBetweenSpacesOnADarkBackground)
{
    EXPECT_THAT(drawnItem(textAt({10, 20}, "a b")), ElementsAre(textLine));
}

TEST_F(CanvasRendererTest, OutlinesASelectedTextBy100By24WhateverItsLength)
{
    EXPECT_THAT(
        drawnItem(textAt({10, 20}, "a b"), true),
        ElementsAre(textLine, "stroke rect(8 16 100 24) " + selectionStroke));
    EXPECT_EQ(
        drawnItem(textAt({10, 20}, std::string(300, 'x')), true).back(),
        "stroke rect(8 16 100 24) " + selectionStroke);
}

TEST_F(CanvasRendererTest, ShowsNoHandlesOnAnActiveText)
{
    EXPECT_THAT(drawnItem(textAt({10, 20}, "a b"), false, true), ElementsAre(textLine));
}

TEST_F(CanvasRendererTest, DrawsNothingOfATextThatIsEmptyOrAbsent)
{
    EXPECT_THAT(drawnItem(textAt({10, 20}, ""), true, true), IsEmpty());
    const AnnotationItem absent{AnnotationTool::text, {{10, 20}, {}}, std::nullopt, systemRed};
    EXPECT_THAT(drawnItem(absent, true, true), IsEmpty());
}

// Blurs

TEST_F(CanvasRendererTest, DrawsABlurAsACheckerboardOfCellsAnEighthOfItsShorterSide)
{
    // 80 by 100 has cells of 10, in 8 columns and 10 rows.
    Lines expected{"fill rect(100 200 80 100)" + blurBase};
    for (int row = 0; row < 10; ++row)
        for (int column = 0; column < 8; ++column)
            if ((row + column) % 2 == 0)
                expected.push_back(
                    "fill rect(" + std::to_string(100 + column * 10) + " "
                    + std::to_string(200 + row * 10) + " 10 10)" + blurCell);
    EXPECT_EQ(drawnItem(blurAt({{100, 200}, {80, 100}})), expected);
}

TEST_F(CanvasRendererTest, UsesCellsOf6PointsInANarrowBlur)
{
    const auto lines = drawnItem(blurAt({{0, 0}, {20, 100}}));
    EXPECT_EQ(lines[1], "fill rect(0 0 6 6)" + blurCell);
    // Four columns and seventeen rows, the last ones clipped to 2 and 4 points.
    EXPECT_EQ(lines.size(), 1u + 4 * 17 / 2);
    EXPECT_EQ(lines[2], "fill rect(12 0 6 6)" + blurCell);
    EXPECT_EQ(lines[4], "fill rect(18 6 2 6)" + blurCell);
    EXPECT_EQ(lines.back(), "fill rect(12 96 6 4)" + blurCell);
}

TEST_F(CanvasRendererTest, PaintsOnlyTheBaseOfABlurWithoutWidthOrHeight)
{
    EXPECT_THAT(
        drawnItem(blurAt({{5, 6}, {0, 50}})), ElementsAre("fill rect(5 6 0 50)" + blurBase));
    EXPECT_THAT(
        drawnItem(blurAt({{5, 6}, {50, 0}})), ElementsAre("fill rect(5 6 50 0)" + blurBase));
}

TEST_F(CanvasRendererTest, DecoratesABlurLikeAHighlight)
{
    const auto plain = drawnItem(blurAt({{10, 20}, {100, 50}}));
    const Lines outline{"stroke rect(8 18 104 54) " + selectionStroke};
    EXPECT_EQ(drawnItem(blurAt({{10, 20}, {100, 50}}), true), plain + outline);
    EXPECT_EQ(drawnItem(blurAt({{10, 20}, {100, 50}}), false, true), plain + blueHandles);
    EXPECT_EQ(drawnItem(blurAt({{10, 20}, {100, 50}}), true, true), plain + outline + blueHandles);
}

TEST_F(CanvasRendererTest, DrawsABlurOfNegativeSizeLikeTheAreaItSpans)
{
    const auto expected = drawnItem(blurAt({{10, 20}, {100, 50}}), true, true);
    for (const Rect rect :
         {Rect{{110, 20}, {-100, 50}}, Rect{{10, 70}, {100, -50}}, Rect{{110, 70}, {-100, -50}}})
        EXPECT_EQ(drawnItem(blurAt(rect), true, true), expected);
}

TEST_F(CanvasRendererTest, StopsAtABlurWithoutAFiniteNumberOfCells)
{
    const double endless = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_DEATH(drawnItem(blurAt({{0, 0}, {endless, 10}})), "finite number of cells");
    EXPECT_DEATH(drawnItem(blurAt({{0, 0}, {endless, endless}})), "finite number of cells");
    EXPECT_DEATH(drawnItem(blurAt({{0, 0}, {10, none}})), "finite number of cells");
    EXPECT_DEATH(drawnItem(blurAt({{0, 0}, {none, 10}})), "finite number of cells");
}

// Which items are active or selected

TEST_F(CanvasRendererTest, TakesHoveredMovedAndResizedItemsForActive)
{
    CanvasState state;
    state.annotations = {highlightAt({{10, 20}, {100, 50}})};
    const auto active = drawnItem(state.annotations[0], false, true);
    for (const auto field :
         {&CanvasState::hoveredIndex, &CanvasState::movingIndex, &CanvasState::resizingIndex}) {
        CanvasState one = state;
        one.*field = 0;
        EXPECT_EQ(drawnState(one), active);
        one.*field = 1;
        EXPECT_EQ(drawnState(one).size(), 1u);
    }
}

// The shape that is being dragged out

TEST_F(CanvasRendererTest, PreviewsAHighlight)
{
    EXPECT_THAT(
        drawnLive(AnnotationTool::highlight, {{10, 20}, {30, 40}}),
        ElementsAre(
            "fill rect(10 20 30 40) color(1 0.8 0 0.25)",
            "stroke rect(10 20 30 40) color(1 0.8 0 0.8) width 1.5"));
}

TEST_F(CanvasRendererTest, PreviewsAnArrowFromTheStartOfTheDrag)
{
    EXPECT_EQ(
        drawnLive(AnnotationTool::arrow, {{10, 20}, {-60, 30}}),
        drawnItem(arrowAt({{10, 20}, {-60, 30}})));
    EXPECT_THAT(drawnLive(AnnotationTool::arrow, {{10, 20}, {-60, 30}}, std::nullopt), IsEmpty());
}

TEST_F(CanvasRendererTest, PreviewsNoShapeWithoutASize)
{
    for (const auto tool : annotationTools)
        EXPECT_THAT(drawnLive(tool, {}), IsEmpty());
    EXPECT_EQ(drawnLive(AnnotationTool::arrow, {{10, 20}, {0, 30}}).size(), 2u);
    EXPECT_EQ(drawnLive(AnnotationTool::arrow, {{10, 20}, {30, 0}}).size(), 2u);
}

TEST_F(CanvasRendererTest, PreviewsABlurWithAThinRedOutline)
{
    EXPECT_EQ(
        drawnLive(AnnotationTool::blur, {{10, 20}, {100, 50}}),
        drawnItem(blurAt({{10, 20}, {100, 50}}))
            + Lines{"stroke rect(10 20 100 50) color(1 0.231 0.188 0.4) width 1"});
}

TEST_F(CanvasRendererTest, PreviewsNoText)
{
    EXPECT_THAT(drawnLive(AnnotationTool::text, {{10, 20}, {30, 40}}), IsEmpty());
}

TEST_F(CanvasRendererTest, PreviewsWithTheToolAndColourOfTheWindow)
{
    window.color = systemBlue;
    canvas.mouseDown({60, 60});
    canvas.mouseDragged({100, 90});
    EXPECT_EQ(drawnItems().front(), "fill rect(60 60 40 30) color(0 0.478 1 0.25)");
    window.tool = AnnotationTool::arrow;
    EXPECT_THAT(drawnItems().front(), HasSubstr("stroke line(60 60, 100 90)"));
}

TEST_F(CanvasRendererTest, PreviewsNothingWithoutAWindow)
{
    canvas.mouseDown({60, 60});
    canvas.mouseDragged({100, 90});
    canvas.setDelegate(nullptr);
    EXPECT_THAT(drawnItems(), IsEmpty());
}

} // namespace
} // namespace tallowbay
