#include "editor/AnnotationHistory.h"
#include "editor/CanvasFixture.h"
#include "editor/ShapeRenderer.h"
#include "editor/saving/AnnotationExporter.h"

#include <cmath>
#include <random>

namespace tallowbay {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

// The canvas gets another size, because the settings or another screen want room.
class CanvasResizeTest : public CanvasTest { };

// Bug: a mask stayed where it was in the window, while the picture moved away below it.
TEST_F(CanvasResizeTest, KeepsItemsOverThePicture)
{
    canvas.setAnnotations(
        {blurAt({{148, 98}, {100, 50}}), arrowAt({{248, 148}, {-100, 50}}),
         textAt({48, 48}, "corner"), highlightAt({{248, 148}, {-20, -40}})});
    // From twice to four times the picture's size, from (48, 48) to (148, 48)
    canvas.setSize({1096, 696});
    EXPECT_THAT(
        canvas.annotations(),
        ElementsAre(
            blurAt({{348, 148}, {200, 100}}), arrowAt({{548, 248}, {-200, 100}}),
            textAt({148, 48}, "corner"), highlightAt({{548, 248}, {-40, -80}})));
}

TEST_F(CanvasResizeTest, TellsTheWindowWhereItemsLieNow)
{
    canvas.setAnnotations({blurAt({{148, 98}, {100, 50}})});
    canvas.setSize({1096, 696});
    EXPECT_THAT(window.told, ElementsAre(blurAt({{348, 148}, {200, 100}})));
    EXPECT_THAT(window.updated, IsEmpty()) << "nothing to save";
    window.told.clear();
    canvas.setSize({1096, 696});
    EXPECT_THAT(window.told, IsEmpty());
}

TEST_F(CanvasResizeTest, KeepsItemsThroughATimeWithoutRoomForThePicture)
{
    const auto mask = blurAt({{148, 98}, {100, 50}});
    canvas.setAnnotations({mask});
    canvas.setSize({96, 396});
    canvas.setSize({0, 0});
    EXPECT_EQ(canvas.placedOn(), (Size{496, 396})) << "there a save still finds its place";
    EXPECT_EQ(only(), mask);
    canvas.setSize({1096, 696});
    EXPECT_EQ(only(), blurAt({{348, 148}, {200, 100}}));
}

TEST_F(CanvasResizeTest, BringsItemsOfAnotherCanvasToThisOne)
{
    canvas.setAnnotations({blurAt({{348, 148}, {200, 100}})}, {1096, 696});
    EXPECT_EQ(only(), blurAt({{148, 98}, {100, 50}}));
    EXPECT_EQ(window.told, canvas.annotations());
}

TEST_F(CanvasResizeTest, BringsItemsToACanvasThatHasNoSizeYet)
{
    JournalCanvasHost host;
    AnnotationCanvas fresh(host, measurer);
    fresh.setBackgroundImage(canvas.backgroundImage());
    fresh.setAnnotations({blurAt({{348, 148}, {200, 100}})}, {1096, 696});
    fresh.setSize({496, 396});
    EXPECT_EQ(fresh.annotations().at(0), blurAt({{148, 98}, {100, 50}}));
}

TEST_F(CanvasResizeTest, LeavesItemsAloneWithoutAPicture)
{
    canvas.setBackgroundImage(nullptr);
    canvas.setAnnotations({blurAt({{148, 98}, {100, 50}})});
    canvas.setSize({1096, 696});
    EXPECT_EQ(only(), blurAt({{148, 98}, {100, 50}}));
    EXPECT_THAT(window.told, IsEmpty());
}

TEST_F(CanvasResizeTest, BringsTheRedoStackAlong)
{
    AnnotationHistory history(canvas);
    ScreenshotRecord record;
    history.canvasDidAddAnnotation(record, {blurAt({{148, 98}, {100, 50}})});
    canvas.setAnnotations(record.annotations);
    history.undoAnnotation(record);
    EXPECT_EQ(record.canvasSize, (Size{496, 396}));

    canvas.setSize({1096, 696});
    history.annotationsChanged(record, window.told);
    EXPECT_EQ(record.canvasSize, (Size{1096, 696}));
    history.redoAnnotation(record);
    EXPECT_EQ(only(), blurAt({{348, 148}, {200, 100}}));
}

// In the middle of something

TEST_F(CanvasResizeTest, GoesOnWithANewShapeFromWhereItBegan)
{
    canvas.mouseDown({148, 98});
    canvas.mouseDragged({248, 148});
    canvas.setSize({1096, 696});
    EXPECT_EQ(canvas.state().liveRect, (Rect{{348, 148}, {200, 100}}));
    canvas.mouseDragged({448, 348});
    canvas.mouseUp({448, 348});
    EXPECT_EQ(only().rect, (Rect{{348, 148}, {100, 200}}));
}

// Bug: points count from the lower edge, so a mouse that stood still seemed to have moved by as
// much as the canvas had grown, and what was being moved jumped.
TEST_F(CanvasResizeTest, GoesOnWithAMoveFromWhereTheMouseIsFoundAgain)
{
    canvas.setAnnotations({blurAt({{148, 98}, {100, 50}})});
    canvas.mouseDown({198, 123});
    canvas.setSize({1096, 696});
    canvas.mouseDragged({198, 423});
    EXPECT_EQ(only().rect, (Rect{{348, 148}, {200, 100}}));
    canvas.mouseDragged({208, 443});
    EXPECT_EQ(only().rect, (Rect{{358, 168}, {200, 100}}));
    canvas.setSize({1096, 696});
    canvas.mouseDragged({209, 443});
    EXPECT_EQ(only().rect, (Rect{{359, 168}, {200, 100}})) << "a size that stays changes nothing";
    canvas.mouseUp({209, 443});
    EXPECT_THAT(window.updated, testing::SizeIs(1));
}

TEST_F(CanvasResizeTest, GoesOnWithAResize)
{
    canvas.setSize({1096, 696});
    canvas.setAnnotations({blurAt({{358, 168}, {200, 100}})});
    canvas.mouseDown({558, 268});
    canvas.mouseDragged({608, 318});
    canvas.setSize({496, 396});
    canvas.mouseDragged({308, 208});
    canvas.mouseUp({308, 208});
    EXPECT_EQ(only().rect, (Rect{{153, 108}, {155, 100}}));
}

TEST_F(CanvasResizeTest, KeepsAnOpenFieldOverThePicture)
{
    window.tool = AnnotationTool::text;
    canvas.mouseDown({148, 98});
    canvas.setSize({1096, 696});
    EXPECT_EQ(view.shownFields.at(0).frame, (Rect{{348, 138}, {200, 24}}));
    view.typed = "a";
    canvas.commitTextIfNeeded();
    EXPECT_EQ(only(), textAt({348, 148}, "a"));
}

// Masks

// The pixels of the picture that a save would replace
std::string hiddenPixels(const AnnotationItem& mask, const Image& picture, Size canvasSize)
{
    headless::RecordingGraphics context;
    drawFlattened(context, picture, {mask}, canvasSize, imageInset);
    return context.lines.at(1);
}

TEST_F(CanvasResizeTest, HidesTheSamePixelsAfterAnyNumberOfSizes)
{
    std::mt19937 random(1);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    };
    for (int round = 0; round < 200; ++round) {
        canvas.setBackgroundImage(std::make_shared<Bitmap>(
            PixelSize{static_cast<int>(between(1, 3000)), static_cast<int>(between(1, 3000))}));
        canvas.setSize({between(100, 2000), between(100, 2000)});
        const bool onWholePoints = round % 2 == 0;
        const auto number = [&](double low, double high) {
            return onWholePoints ? std::round(between(low, high)) : between(low, high);
        };
        canvas.setAnnotations(
            {blurAt({{number(0, 900), number(0, 900)}, {number(-300, 300), number(5, 300)}})});
        const Image picture = canvas.backgroundImage();
        const auto before = hiddenPixels(only(), picture, canvas.placedOn());
        for (int change = 0; change < 50; ++change)
            canvas.setSize({std::round(between(90, 2000)), std::round(between(90, 2000))});
        EXPECT_EQ(hiddenPixels(only(), picture, canvas.placedOn()), before);
    }
}

} // namespace
} // namespace tallowbay
