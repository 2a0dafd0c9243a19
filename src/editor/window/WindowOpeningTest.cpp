#include "support/EditorFixture.h"

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class WindowOpeningTest : public test::EditorTest {
protected:
    std::vector<std::string> journalOf(const std::function<void()>& act)
    {
        editor().journal.clear();
        act();
        return editor().journal;
    }
    void pass(std::chrono::milliseconds time) { desktop.dispatch.advance(time); }
};

TEST_F(WindowOpeningTest, FadesInWithTheKeyboard)
{
    build();
    EXPECT_FALSE(window->visible());
    EXPECT_THAT(
        journalOf([this] { window->show(); }),
        ElementsAre("hear the mouse", "alpha 0", "key and front", "animate to 1 in 200 ms"));
    EXPECT_TRUE(window->visible());
    pass(200ms);
    EXPECT_EQ(editor().alpha, 1);
}

TEST_F(WindowOpeningTest, FadesOutAndLetsClicksThroughMeanwhile)
{
    take("A");
    window->show();
    pass(200ms);
    EXPECT_THAT(
        journalOf([this] { window->confirmAndDismiss(); }),
        ElementsAre("ignore the mouse", "return the keyboard", "animate to 0 in 150 ms"));
    EXPECT_TRUE(window->isClosing());
    pass(149ms);
    EXPECT_TRUE(window->visible());
    pass(1ms);
    EXPECT_FALSE(window->visible());
    EXPECT_FALSE(editor().onScreen);
    EXPECT_TRUE(window->isClosing()) << "until it is shown again";
    window->show();
    EXPECT_FALSE(window->isClosing());
}

TEST_F(WindowOpeningTest, GoesOffTheScreenAfterTheFadeEvenIfItWasShownDuringIt)
{
    take("A");
    window->show();
    pass(200ms);
    window->confirmAndDismiss();
    pass(100ms);
    EXPECT_THAT(
        journalOf([this] { window->show(); }),
        ElementsAre("hear the mouse", "alpha 0", "key and front", "animate to 1 in 200 ms"));
    EXPECT_FALSE(editor().ignoresMouseEvents);
    pass(49ms);
    EXPECT_TRUE(window->visible());
    pass(1ms);
    EXPECT_FALSE(window->visible());
    EXPECT_FALSE(editor().onScreen);
    window->show();
    EXPECT_TRUE(editor().onScreen);
    pass(1000ms);
    EXPECT_TRUE(window->visible());
}

TEST_F(WindowOpeningTest, ConfirmsTheCheckedScreenshotsOrAll)
{
    take("ABC");
    toggle('B');
    window->confirmAndDismiss();
    toggle('A');
    toggle('C');
    window->confirmAndDismiss();
    EXPECT_THAT(confirmed, ElementsAre("AC", "ABC"));
}

TEST_F(WindowOpeningTest, ConfirmsAnEmptyStripAsAnyOther)
{
    build();
    window->show();
    window->confirmAndDismiss();
    EXPECT_THAT(confirmed, ElementsAre(""));
    EXPECT_TRUE(window->isClosing());
}

TEST_F(WindowOpeningTest, SavesWhatIsOnTheCanvasWhenItIsConfirmed)
{
    take("A");
    typeText("typed");
    window->confirmAndDismiss();
    EXPECT_TRUE(window->isBeingWritten(file('A')));
    settle();
    EXPECT_THAT(flattened(), testing::Contains(1u));
    EXPECT_FALSE(window->isBeingWritten(file('A')));
}

TEST_F(WindowOpeningTest, EndsADragWhenItIsConfirmed)
{
    take("A");
    draw();
    settle();
    window->canvas().mouseDown({80, 80});
    window->canvas().mouseDragged({80, 180});
    window->confirmAndDismiss();
    window->canvas().mouseDragged({300, 300});
    EXPECT_EQ(items().at(0).rect.origin.y, 160);
}

TEST_F(WindowOpeningTest, KeepsItemsAndHistoryWhileItIsHidden)
{
    take("A");
    draw(0);
    draw(1);
    window->undoAnnotation();
    window->show();
    window->confirmAndDismiss();
    pass(150ms);
    window->show();
    EXPECT_EQ(items().size(), 1u);
    window->redoAnnotation();
    EXPECT_EQ(items().size(), 2u);
}

TEST_F(WindowOpeningTest, TakesNewScreenshotsWhileItIsHidden)
{
    take("A");
    window->show();
    window->confirmAndDismiss();
    pass(150ms);
    take("B");
    EXPECT_EQ(strip(), "A+*B+");
    EXPECT_FALSE(editor().onScreen);
}

TEST_F(WindowOpeningTest, ClosesAsTheWindowManagerAsksAndConfirms)
{
    take("A");
    window->show();
    window->closeRequested();
    EXPECT_THAT(confirmed, ElementsAre("A"));
    EXPECT_TRUE(window->isClosing());
}

// A hotkey used to close what nobody saw, and to bring it back only when it was pressed again.
TEST_F(WindowOpeningTest, IsNotVisibleWhileItIsMinimized)
{
    take("A");
    window->show();
    window->minimizedChanged(true);
    EXPECT_FALSE(window->visible());
    window->minimizedChanged(false); // by the window manager
    EXPECT_TRUE(window->visible());
    window->minimizedChanged(true);
    window->show();
    EXPECT_TRUE(window->visible());
}

TEST_F(WindowOpeningTest, CoversTheMainScreenAndWithoutOneAPlaceOfUsualSize)
{
    build();
    EXPECT_EQ(window->frame(), (Rect{{0, 0}, {1920, 1080}}));
    desktop.screens.mainSize = Size{1280, 720};
    EXPECT_EQ(window->frame(), (Rect{{0, 0}, {1280, 720}}));
    desktop.screens.mainSize.reset();
    EXPECT_EQ(window->frame(), (Rect{{0, 0}, {1440, 900}}));
}

TEST_F(WindowOpeningTest, StandsAboveTheBar)
{
    EXPECT_EQ(static_cast<int>(WindowLevel::editor), static_cast<int>(WindowLevel::statusBar) + 1);
}

// The keyboard

TEST_F(WindowOpeningTest, GivesTheKeyboardToTheCanvasWhenItBecomesKey)
{
    build();
    editor().canvas.hasFocus = false;
    window->becameKey();
    EXPECT_TRUE(editor().canvas.hasFocus);
}

TEST_F(WindowOpeningTest, LeavesTheKeyboardToTheTextThatIsBeingTyped)
{
    take("A");
    typeText("typed");
    window->becameKey();
    EXPECT_FALSE(editor().canvas.hasFocus);
    EXPECT_TRUE(editor().canvas.fieldIsOpen);
}

TEST_F(WindowOpeningTest, ComesToTheFrontWithAnyEventWhileAnotherProgramHasTheKeyboard)
{
    take("A");
    window->show();
    editor().canvas.hasFocus = false;
    EXPECT_THAT(journalOf([this] { window->eventArrived(false); }), ElementsAre("key and front"));
    EXPECT_TRUE(editor().canvas.hasFocus);
    EXPECT_THAT(journalOf([this] { window->eventArrived(true); }), IsEmpty());
}

TEST_F(WindowOpeningTest, StaysBehindWithEventsThatComeWhileItCloses)
{
    take("A");
    window->show();
    window->confirmAndDismiss();
    EXPECT_THAT(journalOf([this] { window->eventArrived(false); }), IsEmpty());
}

} // namespace
} // namespace tallowbay
