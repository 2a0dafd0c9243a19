#include "support/EditorViewFixture.h"

#include <QWheelEvent>

namespace tallowbay::views {
namespace {

class StripViewTest : public test::EditorViewTest {
protected:
    // With more screenshots than there is room for.
    void openWithMany()
    {
        take("ABCDEFGHIJ");
        open();
        ASSERT_TRUE(runUntil([this] { return offset() == furthest(); }));
    }
    QWidget& content() { return part<QWidget>("stripContent"); }
    int offset() { return -content().x(); }
    int furthest() { return content().width() - stripView().width(); }
    void loseKeyboard()
    {
        other.show();
        other.activateWindow();
        ASSERT_TRUE(runUntil([this] { return !view().isActiveWindow(); }));
    }

    const QPoint farAway{-200, 0};
    QWidget other;
};

TEST_F(StripViewTest, AClickMeansTheScreenshotUnderThePress)
{
    take("AB");
    open();
    const QPoint place = middleOf('A');
    press(stripView(), place);
    takeAfterPaste("C"); // the others move
    ASSERT_NE(middleOf('A'), place);
    release(stripView(), place);
    EXPECT_EQ(strip(), "C+|*A-B-");
}

TEST_F(StripViewTest, AClickOnTheCheckBoxMeansTheScreenshotUnderThePress)
{
    take("AB");
    open();
    const QPoint place = checkboxOf('A');
    press(stripView(), place);
    takeAfterPaste("C");
    release(stripView(), place);
    EXPECT_EQ(strip(), "*C+|A+B-");
}

TEST_F(StripViewTest, AClickOnAScreenshotThatIsGoneIsNone)
{
    take("ABC");
    open();
    const QPoint place = middleOf('B');
    press(stripView(), place);
    deleteFiles("B");
    const std::string before = strip();
    release(stripView(), place);
    EXPECT_EQ(strip(), before);
}

TEST_F(StripViewTest, TheMouseMovesNothingOnceTheButtonIsUp)
{
    openWithMany();
    const QPoint place = middleOf('J');
    press(stripView(), place);
    drag(stripView(), place + QPoint(100, 0));
    const int reached = offset();
    EXPECT_LT(reached, furthest());
    mouse(stripView(), QEvent::MouseMove, place + QPoint(200, 0), Qt::RightButton);
    drag(stripView(), place + QPoint(300, 0));
    EXPECT_EQ(offset(), reached);
}

TEST_F(StripViewTest, ADragEndsWithTheKeyboard)
{
    openWithMany();
    const QPoint place = middleOf('J');
    press(stripView(), place);
    drag(stripView(), place + QPoint(100, 0));
    loseKeyboard();
    const int reached = offset();
    drag(stripView(), place + QPoint(200, 0));
    EXPECT_EQ(offset(), reached);
}

TEST_F(StripViewTest, TheScrollerIsDraggedByTheLeftButton)
{
    openWithMany();
    auto& scroller = part<QWidget>("stripScroller");
    const QPoint right(scroller.width() - 20, scroller.height() / 2);
    press(scroller, right);
    drag(scroller, right + farAway);
    const int reached = offset();
    EXPECT_LT(reached, furthest());
    mouse(scroller, QEvent::MouseButtonRelease, right, Qt::LeftButton, Qt::RightButton);
    drag(scroller, right + 2 * farAway);
    EXPECT_LT(offset(), reached) << "another button ends nothing";
    const int second = offset();
    mouse(scroller, QEvent::MouseMove, right, Qt::RightButton);
    drag(scroller, right);
    EXPECT_EQ(offset(), second) << "the left one was let go elsewhere";
    press(scroller, right);
    drag(scroller, right + farAway);
    loseKeyboard();
    const int third = offset();
    drag(scroller, right + 2 * farAway);
    EXPECT_EQ(offset(), third);
}

TEST_F(StripViewTest, TheSelectedScreenshotStaysInSightOnASmallerScreen)
{
    openWithMany();
    view().resize(700, 500);
    EXPECT_TRUE(runUntil([this] { return offset() == furthest(); }));
    EXPECT_EQ(stripView().width(), 700);
}

TEST_F(StripViewTest, GivesWhereItIsPulledBeyondItsEndAndGlidesBack)
{
    openWithMany();
    const QPoint place = middleOf('J');
    press(stripView(), place);
    drag(stripView(), place + QPoint(-100, 0));
    const int first = offset() - furthest();
    EXPECT_GT(first, 20);
    EXPECT_LT(first, 100);
    drag(stripView(), place + QPoint(-200, 0));
    EXPECT_LT(offset() - furthest(), 2 * first) << "less and less";
    release(stripView(), place + QPoint(-200, 0));
    EXPECT_GT(offset(), furthest()) << "it does not jump";
    EXPECT_TRUE(runUntil([this] { return offset() == furthest(); }));
}

TEST_F(StripViewTest, ATouchpadPullsItBeyondItsEndToo)
{
    openWithMany();
    const auto scroll = [this](int eighthsOfDegrees) {
        QWheelEvent event(
            {100, 100}, {100, 100}, {}, {eighthsOfDegrees, 0}, Qt::NoButton, Qt::NoModifier,
            Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&stripView(), &event);
    };
    scroll(-40);
    scroll(-40);
    EXPECT_GT(offset(), furthest() + 20);
    EXPECT_TRUE(runUntil([this] { return offset() == furthest(); }));
    scroll(-240); // a wheel
    EXPECT_EQ(offset(), furthest());
}

} // namespace
} // namespace tallowbay::views
