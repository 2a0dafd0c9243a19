#include "editor/window/EditorLook.h"
#include "support/EditorFixture.h"

namespace tallowbay {
namespace {

class WindowCellTest : public test::EditorTest {
protected:
    ThumbnailCell cell(char name) const { return window->cell(indexOf(name)); }
};

TEST_F(WindowCellTest, ShowsTheCheckMark)
{
    take("A");
    EXPECT_EQ(cell('A').checkboxSymbol(), "checkmark.square.fill");
    EXPECT_EQ(cell('A').checkboxLabel(), "Selected");
    EXPECT_EQ(cell('A').checkboxTint(), systemBlue);
    toggle('A');
    EXPECT_EQ(cell('A').checkboxSymbol(), "square");
    EXPECT_EQ(cell('A').checkboxLabel(), "Unselected");
    EXPECT_EQ(cell('A').checkboxTint(), Color::white(0.6));
}

TEST_F(WindowCellTest, HasTheSameHeaderColourAgainAfterFive)
{
    take("ABCDEF");
    EXPECT_EQ(cell('A').headerColor, headerPalette[0]);
    EXPECT_EQ(cell('E').headerColor, headerPalette[4]);
    EXPECT_EQ(cell('F').headerColor, headerPalette[0]);
}

TEST_F(WindowCellTest, SaysWhenTheScreenshotWasTaken)
{
    build();
    const std::filesystem::path today = "/o/Screenshot 2026-01-05 at 09.05.00.png";
    const std::filesystem::path unnamed = "/o/a.png";
    window->addURL(today);
    window->addURL(unnamed);
    EXPECT_EQ(window->cell(0).caption, "9:05 AM");
    EXPECT_EQ(window->cell(0).name, "Screenshot 1, 9:05 AM");
    EXPECT_EQ(window->cell(1).caption, "");
    EXPECT_EQ(window->cell(1).name, "Screenshot 2");
    desktop.clock.setWall(desktop.clock.wallNow() + std::chrono::hours(24));
    EXPECT_EQ(window->cell(0).caption, "Yesterday");
}

TEST_F(WindowCellTest, KnowsTheSpellingsOfTheDesktopsTools)
{
    desktop.settings.screenshotNameDates = {R"((\d{4})(\d{2})(\d{2})_(\d{2})(\d{2}))"};
    build();
    window->addURL("/o/Screenshot_20260105_1405.png");
    EXPECT_EQ(window->cell(0).caption, "2:05 PM");
}

TEST_F(WindowCellTest, LightsUpUnderTheMouse)
{
    take("AB");
    window->mouseEnteredCell(indexOf('A'));
    EXPECT_EQ(cell('A').background, Color::white(0.88));
    EXPECT_EQ(cell('B').background, Color::white(217 / 255.0));
    window->mouseExitedCell(indexOf('A'));
    EXPECT_EQ(cell('A').background, Color::white(217 / 255.0));
}

TEST_F(WindowCellTest, IsPaintedAgainOnlyWhereItsBackgroundChanges)
{
    take("AB");
    const auto changesOf = [this](const std::function<void()>& act) {
        editor().changedCells.clear();
        act();
        return editor().changedCells;
    };
    EXPECT_THAT(changesOf([this] { window->mouseExitedCell(0); }), testing::IsEmpty());
    EXPECT_THAT(changesOf([this] { window->mouseEnteredCell(0); }), testing::ElementsAre(0u));
    EXPECT_THAT(changesOf([this] { window->mouseEnteredCell(0); }), testing::IsEmpty());
    EXPECT_THAT(changesOf([this] { window->mouseExitedCell(0); }), testing::ElementsAre(0u));
    EXPECT_THAT(changesOf([this] { window->mouseEnteredCell(1); }), testing::IsEmpty());
    EXPECT_THAT(changesOf([this] { window->checkboxToggled(1); }), testing::ElementsAre(1u));
}

TEST_F(WindowCellTest, KeepsItsBackgroundWhileItIsSelected)
{
    take("AB");
    window->mouseEnteredCell(indexOf('B'));
    EXPECT_EQ(cell('B').background, cellBackground) << "it was selected";
    window->mouseEnteredCell(indexOf('A'));
    click('A');
    window->mouseExitedCell(indexOf('A'));
    EXPECT_EQ(cell('A').background, hoveredCellBackground) << "it was lit when it was selected";
}

TEST_F(WindowCellTest, GoesDarkWhenTheStripMovesBelowTheMouse)
{
    take("AB");
    window->mouseEnteredCell(indexOf('A'));
    takeAfterPaste("C");
    EXPECT_EQ(cell('A').background, cellBackground);
    window->mouseEnteredCell(indexOf('B'));
    deleteFiles("A");
    EXPECT_EQ(cell('B').background, cellBackground);
}

TEST_F(WindowCellTest, KeepsItsIdentityWhenOthersGo)
{
    take("ABC");
    const auto id = cell('C').id;
    deleteFiles("A");
    EXPECT_EQ(cell('C').id, id);
}

TEST_F(WindowCellTest, TellsTheViewOfASelectionThatMoves)
{
    take("AB");
    editor().changedCells.clear();
    click('A');
    EXPECT_THAT(editor().changedCells, testing::UnorderedElementsAre(0u, 1u));
}

} // namespace
} // namespace tallowbay
