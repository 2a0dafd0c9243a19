#include "support/EditorFixture.h"

namespace tallowbay {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class WindowStripTest : public test::EditorTest {
protected:
    std::vector<SessionStore::Item> saved() const
    {
        return SessionStore::load(desktop.files)
            .value_or(std::vector<SessionStore::Item>{{"no session", false}});
    }
    bool sessionIsThere() const { return desktop.files.exists(SessionStore::file(desktop.files)); }
    void store(const std::vector<SessionStore::Item>& items)
    {
        SessionStore::save(desktop.files, desktop.console, items);
    }
};

// Screenshots and batches

TEST_F(WindowStripTest, ShowsABatchLeftToRightAndItsLastScreenshot)
{
    take("ABC");
    EXPECT_EQ(strip(), "A+B+*C+");
    EXPECT_EQ(badges(), "123");
    EXPECT_EQ(editor().logic->selectedIndex(), 2u);
}

TEST_F(WindowStripTest, ShowsANewScreenshotAtOnce)
{
    take("A");
    EXPECT_TRUE(window->canvas().backgroundImage());
    EXPECT_THAT(editor().scrolledTo, Contains(0u));
    EXPECT_GT(editor().stripChanges, 0);
}

TEST_F(WindowStripTest, BeginsABatchOnTheFarLeftAndUnchecksTheOthers)
{
    take("ABC");
    takeAfterPaste("D");
    EXPECT_EQ(strip(), "*D+|A-B-C-");
    EXPECT_EQ(badges(), "1|123");
    EXPECT_EQ(names(window->checkedURLs()), "D");
    take("E");
    EXPECT_EQ(strip(), "D+*E+|A-B-C-");
    EXPECT_EQ(badges(), "12|123");
}

TEST_F(WindowStripTest, PutsNoDividerBeforeTheFirstScreenshot)
{
    build();
    window->setPendingDivider();
    take("A");
    EXPECT_EQ(strip(), "*A+");
    take("B");
    EXPECT_EQ(strip(), "A+*B+");
}

TEST_F(WindowStripTest, ShowsTheSameFileTwiceIfItIsAddedTwice)
{
    take("A");
    take("A");
    EXPECT_EQ(strip(), "A+*A+");
}

TEST_F(WindowStripTest, KeepsTheEditsOfTheScreenshotThatANewOneTakesThePlaceOf)
{
    take("A");
    draw();
    settle();
    take("B");
    click('A');
    settle();
    EXPECT_EQ(items().size(), 1u);
}

TEST_F(WindowStripTest, EndsAMoveThatANewScreenshotComesInto)
{
    take("A");
    draw();
    settle();
    window->canvas().mouseDown({80, 80});
    window->canvas().mouseDragged({80, 180});
    take("B");
    EXPECT_EQ(flattened().back(), 1u);
    window->canvas().mouseDragged({300, 300});
    click('A');
    settle();
    EXPECT_EQ(items().at(0).rect.origin.y, 160);
}

TEST_F(WindowStripTest, GivesTheTextThatIsBeingTypedToItsScreenshotWhenANewOneComes)
{
    take("A");
    typeText("typed");
    take("B");
    EXPECT_THAT(items(), IsEmpty());
    click('A');
    settle();
    EXPECT_EQ(items().at(0).text, "typed");
}

// Check marks and the clipboard

TEST_F(WindowStripTest, PublishesTheCheckedScreenshotsAfterAToggle)
{
    take("ABC");
    toggle('B');
    EXPECT_EQ(strip(), "A+B-*C+");
    EXPECT_EQ(clipboards.back(), "AC");
    toggle('B');
    EXPECT_EQ(clipboards.back(), "ABC");
    EXPECT_THAT(editor().changedCells, Contains(1u));
}

TEST_F(WindowStripTest, PublishesAllScreenshotsOnceNoneIsChecked)
{
    take("AB");
    toggle('A');
    toggle('B');
    EXPECT_EQ(clipboards.back(), "AB");
    EXPECT_THAT(window->checkedURLs(), IsEmpty());
}

TEST_F(WindowStripTest, ChangesNeitherSelectionNorPictureWithACheckMark)
{
    take("AB");
    const Image picture = window->canvas().backgroundImage();
    toggle('A');
    settle();
    EXPECT_EQ(strip(), "A-*B+");
    EXPECT_EQ(window->canvas().backgroundImage(), picture);
}

TEST_F(WindowStripTest, ChecksNothingByAClickOnACell)
{
    take("AB");
    toggle('A');
    click('A');
    EXPECT_EQ(strip(), "*A-B+");
}

TEST_F(WindowStripTest, UnchecksTheLastCheckedWithoutPublishing)
{
    take("ABC");
    toggle('C');
    clipboards.clear();
    EXPECT_THAT(window->uncheckLastURL(), Optional(file('B')));
    EXPECT_EQ(strip(), "A+B-*C-");
    EXPECT_THAT(window->uncheckLastURL(), Optional(file('A')));
    EXPECT_EQ(window->uncheckLastURL(), std::nullopt);
    EXPECT_THAT(clipboards, IsEmpty());
}

TEST_F(WindowStripTest, UnchecksAllWithoutPublishing)
{
    take("AB");
    editor().changedCells.clear();
    EXPECT_TRUE(window->uncheckAll());
    EXPECT_EQ(strip(), "A-*B-");
    EXPECT_THAT(editor().changedCells, ElementsAre(0u, 1u));
    EXPECT_THAT(clipboards, IsEmpty());
    editor().changedCells.clear();
    EXPECT_FALSE(window->uncheckAll());
    EXPECT_THAT(editor().changedCells, IsEmpty()) << "nothing was checked any more";
}

TEST_F(WindowStripTest, SaysWhetherItShowsScreenshots)
{
    build();
    EXPECT_FALSE(window->showsImages());
    take("A");
    EXPECT_TRUE(window->showsImages());
    deleteFiles("A");
    EXPECT_FALSE(window->showsImages());
}

// Files that go

TEST_F(WindowStripTest, DropsAScreenshotWhoseFileIsGone)
{
    take("ABC");
    deleteFiles("B");
    EXPECT_EQ(strip(), "A+*C+");
    EXPECT_EQ(badges(), "13") << "numbers are not given anew";
    EXPECT_EQ(clipboards.back(), "AC");
}

TEST_F(WindowStripTest, KeepsTheOldIndexSelectedAfterARemoval)
{
    take("ABCD");
    click('B');
    deleteFiles("A");
    EXPECT_EQ(strip(), "B+*C+D+") << "the second, as before";
    deleteFiles("CD");
    EXPECT_EQ(strip(), "*B+") << "the last one that is left";
}

TEST_F(WindowStripTest, DropsTheDividerOfABatchThatIsGone)
{
    take("ABC");
    takeAfterPaste("D");
    deleteFiles("D");
    EXPECT_EQ(strip(), "A-B-*C-");
}

TEST_F(WindowStripTest, DropsScreenshotsThatHaveExpiredWhereverTheirFilesAre)
{
    take("AB");
    window->removeExpiredURLs({file('A')});
    EXPECT_EQ(strip(), "*B+");
    EXPECT_TRUE(desktop.files.exists(file('A')));
}

TEST_F(WindowStripTest, LeavesTheClipboardAloneIfNothingIsGone)
{
    take("AB");
    window->removeDeletedFiles();
    window->removeExpiredURLs({file('Z')});
    EXPECT_THAT(clipboards, IsEmpty());
    EXPECT_EQ(strip(), "A+*B+");
}

TEST_F(WindowStripTest, TakesAFileThatIsBeingWrittenForNoDeletedOne)
{
    take("A");
    draw();
    desktop.files.remove(file('A'));
    window->removeDeletedFiles();
    EXPECT_EQ(strip(), "*A+");
    settle();
    EXPECT_TRUE(desktop.files.exists(file('A')));
}

TEST_F(WindowStripTest, EmptiesTheCanvasWithTheLastScreenshotAndShowsNoPlaceholder)
{
    take("A");
    draw();
    settle();
    deleteFiles("A");
    EXPECT_EQ(strip(), "");
    EXPECT_FALSE(window->canvas().backgroundImage());
    EXPECT_THAT(items(), IsEmpty());
    EXPECT_TRUE(window->placeholderHidden());
    EXPECT_EQ(clipboards.back(), "");
}

TEST_F(WindowStripTest, DropsTheTextThatIsBeingTypedWithItsScreenshot)
{
    take("A");
    typeText("typed");
    deleteFiles("A");
    EXPECT_FALSE(editor().canvas.fieldIsOpen);
    press(keyCode::returnKey);
    settle();
    EXPECT_FALSE(desktop.files.exists(file('A'))) << "nothing brings the file back";
}

TEST_F(WindowStripTest, KeepsTheTextThatIsBeingTypedWhenAnotherScreenshotGoes)
{
    take("AB");
    click('A');
    settle();
    typeText("typed");
    deleteFiles("B");
    EXPECT_EQ(items().at(0).text, "typed");
}

TEST_F(WindowStripTest, GoesOnAfterTheLastScreenshotIsGone)
{
    take("A");
    deleteFiles("A");
    window->undoAnnotation();
    window->redoAnnotation();
    window->toolSelected(2);
    for (const KeyCode key : {keyCode::left, keyCode::right, keyCode::up, keyCode::down})
        press(key);
    take("B");
    EXPECT_EQ(strip(), "*B+");
}

// Navigation

TEST_F(WindowStripTest, NavigatesByWhatIsSeen)
{
    take("AB");
    takeAfterPaste("C");
    press(keyCode::right);
    EXPECT_EQ(strip(), "C+|*A-B-") << "the divider is stepped over";
    press(keyCode::right);
    EXPECT_EQ(strip(), "C+|A-*B-");
    press(keyCode::left);
    press(keyCode::left);
    EXPECT_EQ(strip(), "*C+|A-B-");
    EXPECT_EQ(editor().scrolledTo.back(), indexOf('C'));
}

TEST_F(WindowStripTest, StaysAtEitherEnd)
{
    take("AB");
    press(keyCode::right);
    EXPECT_EQ(strip(), "A+*B+");
    press(keyCode::left);
    press(keyCode::left);
    EXPECT_EQ(strip(), "*A+B+");
}

TEST_F(WindowStripTest, KeepsTheItemsOfTheScreenshotThatItNavigatesAwayFrom)
{
    take("AB");
    draw();
    press(keyCode::left);
    settle();
    press(keyCode::right);
    settle();
    EXPECT_EQ(items().size(), 1u);
}

TEST_F(WindowStripTest, WritesItemsAgainOverAPictureThatHasThemAlready)
{
    take("AB");
    draw();
    settle();
    EXPECT_THAT(flattened(), ElementsAre(1u));
    press(keyCode::left);
    settle();
    EXPECT_THAT(flattened(), ElementsAre(1u)) << "it was written just so";
    press(keyCode::right);
    settle();
    press(keyCode::left);
    settle();
    EXPECT_THAT(flattened(), ElementsAre(1u, 1u)) << "the picture was read anew";
}

TEST_F(WindowStripTest, CommitsTextBeforeItNavigates)
{
    take("AB");
    typeText("typed");
    window->handleKeyDown({keyCode::left, 0});
    settle();
    press(keyCode::right);
    settle();
    EXPECT_EQ(items().at(0).text, "typed");
}

TEST_F(WindowStripTest, InvertsTheCheckMarkOfTheSelectedScreenshotWithTheUpArrow)
{
    take("AB");
    press(keyCode::up);
    EXPECT_EQ(strip(), "A+*B-");
    EXPECT_EQ(clipboards.back(), "A");
    EXPECT_FALSE(saved().back().checked);
    press(keyCode::up);
    EXPECT_EQ(strip(), "A+*B+");
}

TEST_F(WindowStripTest, DoesNothingWithTheDownArrow)
{
    take("AB");
    press(keyCode::down);
    EXPECT_EQ(strip(), "A+*B+");
    EXPECT_THAT(clipboards, IsEmpty());
}

// The session

TEST_F(WindowStripTest, SavesTheStripAsItIsSeen)
{
    take("ABC");
    takeAfterPaste("D");
    EXPECT_THAT(
        saved(),
        ElementsAre(
            SessionStore::Item{file('D'), true}, SessionStore::Item{},
            SessionStore::Item{file('A'), false}, SessionStore::Item{file('B'), false},
            SessionStore::Item{file('C'), false}));
}

TEST_F(WindowStripTest, SavesAfterEveryChangeOfTheStrip)
{
    take("ABC");
    const auto savesOf = [this](const std::function<void()>& change) {
        desktop.files.remove(SessionStore::file(desktop.files));
        change();
        return sessionIsThere();
    };
    EXPECT_TRUE(savesOf([this] { toggle('A'); }));
    EXPECT_TRUE(savesOf([this] { press(keyCode::up); }));
    EXPECT_TRUE(savesOf([this] { window->uncheckLastURL(); }));
    EXPECT_TRUE(savesOf([this] { toggle('A'); }));
    EXPECT_TRUE(savesOf([this] { window->uncheckAll(); }));
    EXPECT_TRUE(savesOf([this] { window->removeExpiredURLs({file('B')}); }));
    EXPECT_TRUE(savesOf([this] { window->addURL(file('B')); }));
    EXPECT_FALSE(savesOf([this] { click('A'); })) << "the selection is not kept";
}

TEST_F(WindowStripTest, RestoresAllUncheckedAndShowsTheLastOfTheNewestBatch)
{
    take("ABC");
    takeAfterPaste("DE");
    restart();
    EXPECT_EQ(strip(), "D-*E-|A-B-C-");
    EXPECT_EQ(badges(), "12|123");
    EXPECT_TRUE(window->placeholderHidden());
    EXPECT_TRUE(window->canvas().backgroundImage());
}

TEST_F(WindowStripTest, BeginsABatchWithTheFirstScreenshotAfterARestore)
{
    take("AB");
    restart();
    take("C");
    EXPECT_EQ(strip(), "*C+|A-B-");
    EXPECT_EQ(badges(), "1|12");
}

TEST_F(WindowStripTest, LeavesMissingScreenshotsOutOfARestore)
{
    createFiles("XZ");
    store({{}, {file('X'), true}, {}, {}, {file('Y'), true}});
    build();
    EXPECT_EQ(strip(), "*X-|");
}

TEST_F(WindowStripTest, ForgetsASessionOfWhichNothingIsLeft)
{
    store({{file('X'), true}, {}, {file('Y'), false}});
    build();
    EXPECT_EQ(strip(), "");
    EXPECT_FALSE(sessionIsThere());
    EXPECT_FALSE(window->placeholderHidden());
}

TEST_F(WindowStripTest, LeavesAnEmptyOrUnreadableSessionAsItIs)
{
    store({});
    build();
    EXPECT_TRUE(sessionIsThere());
    desktop.files.create(SessionStore::file(desktop.files), "no session");
    restart();
    EXPECT_EQ(strip(), "");
    EXPECT_EQ(desktop.files.read(SessionStore::file(desktop.files)), "no session");
}

TEST_F(WindowStripTest, KeepsNeitherItemsNorHistoryOverARestart)
{
    take("A");
    draw();
    settle();
    window->undoAnnotation();
    restart();
    EXPECT_THAT(items(), IsEmpty());
    window->redoAnnotation();
    EXPECT_THAT(items(), IsEmpty());
}

} // namespace
} // namespace tallowbay
