#include "editor/CanvasFixture.h"

namespace tallowbay::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

// Gestures whose release is never heard: the window was hidden, another program took the mouse.
class CanvasGestureTest : public CanvasTest { };

TEST_F(CanvasGestureTest, AShapeWhoseEndIsNotHeardIsDropped)
{
    window.tool = AnnotationTool::blur;
    canvas.mouseDown({100, 100});
    canvas.mouseDragged({200, 200});
    view.redraws = 0;
    canvas.gestureLost();
    EXPECT_GT(view.redraws, 0);
    EXPECT_THAT(drawnItems(), IsEmpty());
    canvas.mouseUp({200, 200});
    EXPECT_THAT(canvas.annotations(), IsEmpty());
}

TEST_F(CanvasGestureTest, AMoveWhoseEndIsNotHeardIsReportedWhereItGot)
{
    canvas.setAnnotations({highlightAt({{100, 100}, {50, 50}})});
    canvas.mouseDown({120, 120});
    canvas.mouseDragged({140, 130});
    canvas.gestureLost();
    EXPECT_THAT(window.updated, SizeIs(1));
    canvas.mouseDragged({300, 300});
    EXPECT_EQ(only().rect, (Rect{{120, 110}, {50, 50}}));
}

TEST_F(CanvasGestureTest, ANewPressDoesNotGoOnWithAnOldResize)
{
    const Rect rect{{100, 100}, {50, 50}};
    canvas.setAnnotations({blurAt(rect)});
    canvas.mouseDown({150, 150});
    ASSERT_TRUE(canvas.state().resizingIndex);
    canvas.mouseDown({300, 300});
    EXPECT_FALSE(canvas.state().resizingIndex);
    canvas.mouseDragged({350, 350});
    EXPECT_EQ(only().rect, rect);
}

TEST_F(CanvasGestureTest, AShapeThatIsDraggedOutDoesNotMoveToAnotherPicture)
{
    window.tool = AnnotationTool::blur;
    canvas.mouseDown({100, 100});
    canvas.mouseDragged({200, 200});
    canvas.setAnnotations({});
    canvas.mouseUp({200, 200});
    EXPECT_THAT(canvas.annotations(), IsEmpty());
}

TEST_F(CanvasGestureTest, EndsWithThePicture)
{
    const Rect rect{{100, 100}, {50, 50}};
    canvas.setAnnotations({blurAt(rect)});
    const Image picture = canvas.backgroundImage();
    canvas.mouseDown({120, 120});
    canvas.setBackgroundImage(nullptr);
    canvas.setBackgroundImage(picture);
    canvas.mouseDragged({300, 300});
    EXPECT_EQ(only().rect, rect);
}

} // namespace
} // namespace tallowbay::test
