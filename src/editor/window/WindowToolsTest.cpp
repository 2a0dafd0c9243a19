#include "editor/window/EditorLook.h"
#include "support/EditorFixture.h"

namespace tallowbay {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class WindowToolsTest : public test::EditorTest { };

// The rail and the swatches

TEST_F(WindowToolsTest, OffersTheToolsInTheirOrder)
{
    build();
    std::vector<std::string> rows;
    for (const RailButton& button : window->tools())
        rows.push_back(button.symbol + " " + button.label + " " + std::to_string(button.tag));
    EXPECT_THAT(
        rows,
        ElementsAre(
            "pencil.tip Highlight 0", "arrow.up.right Arrow 1", "textformat Text 2",
            "eye.slash Blur 3"));
    const auto plain = [](const char* symbol, const char* label, const char* tooltip, Color tint) {
        return RailButton{symbol, label, tooltip, 0, false, tint, std::nullopt};
    };
    const Color tint = Color::white(0.85);
    EXPECT_EQ(undoButton(), plain("arrow.uturn.backward", "Undo", "Undo (Ctrl+Z)", tint));
    EXPECT_EQ(redoButton(), plain("arrow.uturn.forward", "Redo", "Redo (Ctrl+Shift+Z)", tint));
    EXPECT_EQ(settingsButton(), plain("gearshape", "Settings", "Settings", Color::white(0.25)));
}

TEST_F(WindowToolsTest, SaysWhatAButtonDoesAndItsKey)
{
    build();
    for (const RailButton& button : window->tools())
        EXPECT_EQ(button.tooltip, button.label) << "tools have no keys";
}

TEST_F(WindowToolsTest, MarksTheChosenToolAlone)
{
    take("A");
    window->toolSelected(1);
    for (const RailButton& button : window->tools()) {
        const bool chosen = button.tag == 1;
        EXPECT_EQ(button.selected, chosen);
        EXPECT_EQ(button.tint, chosen ? Color::white(1) : Color::white(0.85));
        EXPECT_EQ(button.background, chosen ? std::optional(Color::white(1, 0.18)) : std::nullopt);
    }
}

TEST_F(WindowToolsTest, HighlightsAtFirst)
{
    build();
    EXPECT_TRUE(window->tools().at(0).selected);
}

TEST_F(WindowToolsTest, TakesATagThatBelongsToNoToolForTheHighlight)
{
    take("A");
    window->toolSelected(1);
    window->toolSelected(17);
    EXPECT_TRUE(window->tools().at(0).selected);
}

TEST_F(WindowToolsTest, ChoosesNoToolWithoutAScreenshot)
{
    build();
    window->toolSelected(3);
    EXPECT_TRUE(window->tools().at(0).selected);
    EXPECT_THAT(editor().journal, IsEmpty());
}

TEST_F(WindowToolsTest, FadesTheSwatchesOutForTheBlurAndInForTheOthers)
{
    take("A");
    window->toolSelected(3);
    EXPECT_EQ(editor().journal.back(), "swatches from 1 to 0 in 150 ms");
    EXPECT_EQ(window->swatchCardAlpha(), 0);
    window->toolSelected(1);
    EXPECT_EQ(editor().journal.back(), "swatches from 0 to 1 in 150 ms");
    EXPECT_EQ(window->swatchCardAlpha(), 1);
}

TEST_F(WindowToolsTest, CommitsTheTextWhenTheToolChanges)
{
    take("A");
    typeText("typed");
    window->toolSelected(0);
    EXPECT_EQ(items().at(0).text, "typed");
    EXPECT_FALSE(editor().canvas.fieldIsOpen);
}

TEST_F(WindowToolsTest, DrawsWithTheChosenTool)
{
    take("A");
    window->toolSelected(3);
    draw();
    EXPECT_EQ(items().at(0).tool, AnnotationTool::blur);
}

TEST_F(WindowToolsTest, DrawsInTheChosenColourAndLeavesItemsAsTheyAre)
{
    take("A");
    draw();
    window->canvas().mouseDown({80, 80}); // which selects it
    window->canvas().mouseUp({80, 80});
    window->swatchSelected(2);
    draw(2);
    EXPECT_EQ(window->selectedSwatch(), 2u);
    EXPECT_EQ(items().at(0).color, systemYellow);
    EXPECT_EQ(items().at(1).color, swatchColorValues[2]);
}

TEST_F(WindowToolsTest, HasTheViewLookAgainAfterEveryChoice)
{
    take("A");
    const auto looksFor = [this](const std::function<void()>& choice) {
        const int before = editor().looks;
        choice();
        return editor().looks - before;
    };
    EXPECT_EQ(looksFor([this] { window->toolSelected(2); }), 1);
    EXPECT_EQ(looksFor([this] { window->swatchSelected(2); }), 1);
    EXPECT_GE(looksFor([this] { click('A'); }), 1);
    EXPECT_GE(looksFor([this] { deleteFiles("A"); }), 1);
}

TEST_F(WindowToolsTest, IgnoresASwatchThatDoesNotExist)
{
    build();
    window->swatchSelected(4);
    window->swatchSelected(5);
    EXPECT_EQ(window->selectedSwatch(), 4u);
}

TEST_F(WindowToolsTest, HasANameForEverySwatch)
{
    for (std::size_t index = 0; index < swatchColorValues.size(); ++index)
        EXPECT_THAT(swatchLabel(index), Not(IsEmpty()));
}

TEST_F(WindowToolsTest, IsDimUntilAScreenshotIsShown)
{
    build();
    EXPECT_EQ(window->toolRailAlpha(), 0.35);
    EXPECT_EQ(window->swatchCardAlpha(), 0);
    EXPECT_FALSE(window->placeholderHidden());
    EXPECT_EQ(window->placeholder(), "Take a screenshot to get started");
    EXPECT_EQ(window->headerColor(), std::nullopt);
    EXPECT_EQ(window->title(), "Tallowbay");
    take("A");
    EXPECT_EQ(window->toolRailAlpha(), 1);
    EXPECT_EQ(window->swatchCardAlpha(), 1);
    EXPECT_TRUE(window->placeholderHidden());
}

TEST_F(WindowToolsTest, ColoursTheHeaderByTheIndexOfTheScreenshot)
{
    take("ABCDEF");
    EXPECT_EQ(window->headerColor(), headerPalette[0]) << "the sixth is as the first";
    click('C');
    EXPECT_EQ(window->headerColor(), headerPalette[2]);
    deleteFiles("A");
    EXPECT_EQ(nameOf(window->selectedIndex()), "D");
    EXPECT_EQ(window->headerColor(), headerPalette[2]);
    EXPECT_EQ(window->cell(window->selectedIndex()).headerColor, headerPalette[3])
        << "a cell keeps its colour";
}

TEST_F(WindowToolsTest, HasNoSettingsYet)
{
    build();
    EXPECT_FALSE(window->settingsAvailable());
    window->toggleSettings();
    window->showSettings();
    EXPECT_FALSE(window->settingsVisible());
}

// History

TEST_F(WindowToolsTest, SavesAndPublishesAfterEveryEdit)
{
    take("AB");
    const auto edit = [this](const std::function<void()>& change) {
        clipboards.clear();
        const auto before = flattened().size();
        change();
        EXPECT_TRUE(window->isBeingWritten(file('B')));
        settle();
        EXPECT_EQ(flattened().size(), before + 1);
        EXPECT_THAT(clipboards, ElementsAre("AB"));
    };
    edit([this] { draw(); });
    edit([this] { draw(1); });
    edit([this] { moveFirst(); });
    edit([this] { window->undoAnnotation(); });
    edit([this] { window->redoAnnotation(); });
    window->canvas().mouseDown({80, 180});
    window->canvas().mouseUp({80, 180});
    settle();
    edit([this] { press(keyCode::backspace); });
    EXPECT_EQ(items().size(), 1u);
}

TEST_F(WindowToolsTest, PublishesTheCheckedScreenshotsAfterAnEdit)
{
    take("AB");
    toggle('B');
    draw();
    EXPECT_EQ(clipboards.back(), "A");
}

TEST_F(WindowToolsTest, UndoesTheTopmostItemAndNoMove)
{
    take("A");
    draw(0);
    draw(1);
    moveFirst();
    window->undoAnnotation();
    ASSERT_EQ(items().size(), 1u);
    EXPECT_EQ(items().at(0).rect.origin.y, 160) << "as it was moved";
}

TEST_F(WindowToolsTest, BringsADeletedItemBackOnTop)
{
    take("A");
    for (const double step : {0, 1, 2})
        draw(step);
    window->canvas().mouseDown({140, 80}); // selects the middle one
    window->canvas().mouseUp({140, 80});
    press(keyCode::backspace);
    EXPECT_EQ(items().size(), 2u);
    EXPECT_EQ(window->canvas().state().selectedAnnotationIndex, std::nullopt);
    window->redoAnnotation();
    ASSERT_EQ(items().size(), 3u);
    EXPECT_EQ(items().at(2).rect.origin.x, 120);
}

TEST_F(WindowToolsTest, RedoesNothingAfterANewItem)
{
    take("A");
    draw(0);
    window->undoAnnotation();
    draw(1);
    window->redoAnnotation();
    EXPECT_EQ(items().size(), 1u);
}

TEST_F(WindowToolsTest, WritesNothingOnceTheLastItemIsUndone)
{
    take("A");
    draw();
    settle();
    const auto before = flattened();
    window->undoAnnotation();
    EXPECT_FALSE(window->isBeingWritten(file('A')));
    settle();
    EXPECT_EQ(flattened(), before);
    EXPECT_THAT(clipboards, ElementsAre("A", "A"));
}

TEST_F(WindowToolsTest, ChangesNothingWhereThereIsNothingToUndoOrRedo)
{
    take("A");
    window->undoAnnotation();
    window->redoAnnotation();
    settle();
    EXPECT_THAT(flattened(), IsEmpty());
    EXPECT_THAT(clipboards, IsEmpty());
}

TEST_F(WindowToolsTest, KeepsAHistoryForEachScreenshot)
{
    take("AB");
    draw(0);
    window->undoAnnotation();
    click('A');
    settle();
    draw(1);
    click('B');
    settle();
    window->redoAnnotation();
    ASSERT_EQ(items().size(), 1u);
    EXPECT_EQ(items().at(0).rect.origin.x, 60);
    click('A');
    settle();
    EXPECT_EQ(items().at(0).rect.origin.x, 120);
}

TEST_F(WindowToolsTest, KeepsItemsOverThePictureWhenTheCanvasHasAnotherSizeOnReturn)
{
    take("AB");
    draw();
    settle();
    click('A');
    settle();
    window->canvas().setSize({96 + 800, 96 + 600}); // forty times the picture's size
    click('B');
    settle();
    EXPECT_EQ(items().at(0).rect, (Rect{{48 + 24, 48 + 24}, {80, 80}}));
}

} // namespace
} // namespace tallowbay
