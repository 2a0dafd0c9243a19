#include "editor/AnnotationHistory.h"

#include "editor/CanvasFixture.h"

namespace tallowbay {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

class AnnotationHistoryTest : public CanvasTest {
protected:
    AnnotationHistoryTest()
    {
        record.annotations = {a, b, c};
        canvas.setAnnotations(record.annotations);
        view.journal.clear();
    }

    void select(Point inside)
    {
        canvas.mouseDown(inside);
        canvas.mouseUp(inside);
        view.journal.clear();
    }
    // In the record and on the canvas
    void expectItems(const std::vector<AnnotationItem>& expected)
    {
        EXPECT_EQ(record.annotations, expected);
        EXPECT_EQ(canvas.annotations(), expected);
    }

    const AnnotationItem a = highlightAt({{60, 60}, {20, 20}});
    const AnnotationItem b = blurAt({{100, 100}, {40, 40}});
    const AnnotationItem c = arrowAt({{200, 200}, {60, 60}});
    const AnnotationItem d = textAt({300, 100}, "d");
    ScreenshotRecord record;
    AnnotationHistory history{canvas};
};

TEST_F(AnnotationHistoryTest, TakesTheTopmostItemsAwayAndBringsThemBackInTurn)
{
    EXPECT_TRUE(history.undoAnnotation(record));
    EXPECT_TRUE(history.undoAnnotation(record));
    expectItems({a});
    EXPECT_THAT(record.redo, ElementsAre(c, b));
    EXPECT_TRUE(history.redoAnnotation(record));
    expectItems({a, b});
    EXPECT_TRUE(history.redoAnnotation(record));
    expectItems({a, b, c});
    EXPECT_THAT(record.redo, IsEmpty());
}

TEST_F(AnnotationHistoryTest, ChangesNothingWhereThereIsNothingToDo)
{
    EXPECT_FALSE(history.redoAnnotation(record));
    EXPECT_FALSE(history.deleteAnnotation(record, 3));
    expectItems({a, b, c});
    EXPECT_THAT(record.redo, IsEmpty());

    record.annotations.clear();
    canvas.setAnnotations({});
    view.journal.clear();
    EXPECT_FALSE(history.undoAnnotation(record));
    EXPECT_FALSE(history.deleteAnnotation(record, 0));
    EXPECT_THAT(record.redo, IsEmpty());
    EXPECT_THAT(view.journal, IsEmpty());
}

TEST_F(AnnotationHistoryTest, BringsADeletedItemBackOnTop)
{
    EXPECT_TRUE(history.deleteAnnotation(record, 1));
    expectItems({a, c});
    EXPECT_TRUE(history.redoAnnotation(record));
    expectItems({a, c, b});
}

TEST_F(AnnotationHistoryTest, EndsTheSelectionWithTheDeletedItemAlone)
{
    select({120, 120});
    history.undoAnnotation(record);
    EXPECT_EQ(canvas.state().selectedAnnotationIndex, 1u);
    history.deleteAnnotation(record, 0);
    EXPECT_EQ(canvas.state().selectedAnnotationIndex, std::nullopt);
}

TEST_F(AnnotationHistoryTest, RedrawsWhateverChanges)
{
    history.undoAnnotation(record);
    EXPECT_THAT(view.journal, testing::Contains("redraw"));
    view.journal.clear();
    history.redoAnnotation(record);
    EXPECT_THAT(view.journal, testing::Contains("redraw"));
    view.journal.clear();
    history.deleteAnnotation(record, 0);
    EXPECT_THAT(view.journal, testing::Contains("redraw"));
}

TEST_F(AnnotationHistoryTest, RedoesNothingAfterANewItem)
{
    history.undoAnnotation(record);
    history.canvasDidAddAnnotation(record, {a, b, d});
    EXPECT_THAT(record.annotations, ElementsAre(a, b, d));
    EXPECT_THAT(record.redo, IsEmpty());
    EXPECT_FALSE(history.redoAnnotation(record));
}

TEST_F(AnnotationHistoryTest, UndoesNoMoveAndKeepsTheRedoStackThroughOne)
{
    history.undoAnnotation(record);
    auto moved = a;
    moved.rect.origin.x += 5;
    history.annotationsChanged(record, {moved, b});
    EXPECT_THAT(record.redo, ElementsAre(c));
    canvas.setAnnotations(record.annotations);
    history.undoAnnotation(record);
    expectItems({moved});
}

TEST_F(AnnotationHistoryTest, KeepsAStackForEachScreenshot)
{
    ScreenshotRecord other;
    history.undoAnnotation(record);
    canvas.setAnnotations(other.annotations);
    EXPECT_FALSE(history.undoAnnotation(other));
    EXPECT_FALSE(history.redoAnnotation(other));
    canvas.setAnnotations(record.annotations);
    EXPECT_TRUE(history.redoAnnotation(record));
    expectItems({a, b, c});
}

} // namespace
} // namespace tallowbay
