#include "editor/CanvasFixture.h"

namespace tallowbay {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr KeyPress deletePress{51, 0};

class CanvasKeyTest : public CanvasTest { };

TEST_F(CanvasKeyTest, DeletesTheSelectedItemThroughTheWindow)
{
    canvas.setAnnotations({highlightAt({{60, 60}, {20, 20}}), highlightAt({{100, 100}, {80, 60}})});
    canvas.mouseDown({140, 130});
    canvas.mouseUp({140, 130});
    canvas.keyDown(deletePress);
    EXPECT_THAT(window.deleted, ElementsAre(1u));
    EXPECT_THAT(window.keys, IsEmpty());
}

TEST_F(CanvasKeyTest, PassesOtherKeysAndDeleteWithoutASelectionToTheWindow)
{
    const KeyPress undo{6, eventFlag::command};
    canvas.keyDown(deletePress);
    canvas.keyDown(undo);
    EXPECT_THAT(window.keys, ElementsAre(deletePress, undo));
    EXPECT_THAT(window.deleted, IsEmpty());
}

TEST_F(CanvasKeyTest, DropsKeysOutsideOfAWindow)
{
    canvas.setDelegate(nullptr);
    canvas.keyDown(deletePress);
    EXPECT_THAT(window.keys, IsEmpty());
}

class CanvasCursorTest : public CanvasTest {
protected:
    CanvasCursorTest() { canvas.setAnnotations({highlightAt({{100, 100}, {100, 100}})}); }

    CanvasCursor cursorAt(Point point)
    {
        view.cursor.reset();
        view.redraws = 0;
        canvas.mouseMoved(point);
        return *view.cursor;
    }
};

TEST_F(CanvasCursorTest, IsACrosshairOverTheBounds)
{
    canvas.resetCursorRects();
    EXPECT_EQ(view.cursor, CanvasCursor::crosshair);
}

TEST_F(CanvasCursorTest, FollowsWhatIsUnderTheMouse)
{
    EXPECT_EQ(cursorAt({300, 300}), CanvasCursor::crosshair);
    EXPECT_EQ(view.redraws, 0);
    EXPECT_EQ(cursorAt({150, 150}), CanvasCursor::openHand);
    EXPECT_EQ(canvas.state().hoveredIndex, 0u);
    EXPECT_EQ(view.redraws, 1);
    EXPECT_EQ(cursorAt({151, 150}), CanvasCursor::openHand);
    EXPECT_EQ(view.redraws, 0);
    EXPECT_EQ(cursorAt({105, 105}), CanvasCursor::resizeUpDown);
    EXPECT_EQ(view.redraws, 0);
    EXPECT_EQ(cursorAt({300, 300}), CanvasCursor::crosshair);
    EXPECT_EQ(canvas.state().hoveredIndex, std::nullopt);
    EXPECT_EQ(view.redraws, 1);
}

TEST_F(CanvasCursorTest, ShowsTheResizeCursorJustOutsideOfACornerWithoutHandles)
{
    EXPECT_EQ(cursorAt({95, 92}), CanvasCursor::resizeUpDown);
    EXPECT_EQ(view.redraws, 0);
    EXPECT_EQ(canvas.state().hoveredIndex, std::nullopt);
    EXPECT_EQ(drawnItems().size(), 1u);
    EXPECT_EQ(cursorAt({88, 100}), CanvasCursor::crosshair);
}

TEST_F(CanvasCursorTest, ShowsTheResizeCursorWhenTheMouseEntersAtACorner)
{
    EXPECT_EQ(cursorAt({104, 104}), CanvasCursor::resizeUpDown);
    EXPECT_EQ(view.redraws, 1);
}

TEST_F(CanvasCursorTest, ServesArrowEndsWithTheSameCursor)
{
    canvas.setAnnotations({arrowAt({{100, 100}, {100, 0}})});
    EXPECT_EQ(cursorAt({96, 96}), CanvasCursor::resizeUpDown);
    EXPECT_EQ(cursorAt({204, 104}), CanvasCursor::resizeUpDown);
    EXPECT_EQ(cursorAt({150, 105}), CanvasCursor::openHand);
}

TEST_F(CanvasCursorTest, ClosesTheHandWhileAnItemIsMoved)
{
    canvas.mouseDown({150, 150});
    EXPECT_EQ(view.cursor, CanvasCursor::closedHand);
    canvas.mouseUp({150, 150});
    EXPECT_EQ(view.cursor, CanvasCursor::openHand);
}

TEST_F(CanvasCursorTest, IsFollowedWithoutABackgroundImageToo)
{
    canvas.setBackgroundImage(nullptr);
    EXPECT_EQ(cursorAt({150, 150}), CanvasCursor::openHand);
}

} // namespace
} // namespace tallowbay
