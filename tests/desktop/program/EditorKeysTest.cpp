#include "desktop/program/EditorFixture.h"

using testing::ElementsAre;

namespace tallowbay::test {
namespace {

// What every key does in the editor, as the user presses them.
class EditorKeysTest : public EditorFixture {
protected:
    EditorKeysTest() { server.startWindowManager(); }

    // Marks a part of the picture, over a place without ink, and sees that it is marked.
    void highlight(int x)
    {
        const Place middle = editor.canvas(x, clearRow);
        const Rgb before = editor.pixel(middle);
        editor.drag(editor.canvas(x - 15, clearRow - 15), editor.canvas(x + 15, clearRow + 15));
        ASSERT_TRUE(editor.waitForChange(middle, before));
        EXPECT_TRUE(isMarked(x));
    }

    bool isMarked(int x) const { return !editor.shows(place(x), pictureColor()); }
    bool waitForMark(int x, bool marked) const
    {
        return waitUntil([&] { return isMarked(x) == marked; });
    }
    Place place(int x) const { return editor.canvas(x, clearRow); }
};

TEST_F(EditorKeysTest, ArrowsGoToTheNeighbourOnTheScreen)
{
    openEditorWith(3);
    editor.press("Left");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
    editor.press("Left");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    editor.press("Left"); // there is nothing further
    editor.press("Right");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
}

TEST_F(EditorKeysTest, UpChecksAndUnchecksWhatIsSelected)
{
    openEditorWith(3);
    ASSERT_TRUE(editor.waitForCheck(2, true));
    editor.press("Up");
    EXPECT_TRUE(editor.waitForCheck(2, false));
    EXPECT_TRUE(waitForClipboard(2));
    EXPECT_FALSE(clipboardHas(screenshots[2]));
    editor.press("Up");
    EXPECT_TRUE(editor.waitForCheck(2, true));
    EXPECT_TRUE(waitForClipboard(3));
}

TEST_F(EditorKeysTest, DownAndLettersDoNothing)
{
    openEditorWith(2);
    for (const char* key : {"Down", "a", "1", "F5", "BackSpace", "shift+z"})
        editor.press(key);
    editor.press("Up"); // what was before it would be seen by now
    ASSERT_TRUE(editor.waitForCheck(1, false));
    EXPECT_TRUE(editor.showsChecked(0));
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
    EXPECT_TRUE(editor.isShown());
}

TEST_F(EditorKeysTest, ReturnEnterAndEscapeConfirmAndClose)
{
    openEditorWith(3);
    for (const char* key : {"Return", "KP_Enter", "Escape"}) {
        editor.press("Up");
        ASSERT_TRUE(editor.waitForCheck(2, false));
        editor.press(key);
        EXPECT_TRUE(editor.waitUntilGone()) << key;
        EXPECT_TRUE(waitForClipboard(2)) << key;
        openEditor();
        ASSERT_TRUE(editor.waitForHeader(EditorScreen::headers[2]));
        editor.press("Up");
        ASSERT_TRUE(editor.waitForCheck(2, true));
    }
}

TEST_F(EditorKeysTest, ControlZTakesBackAndShiftBringsAgain)
{
    openEditorWith(1);
    highlight(-100);
    highlight(100);
    editor.press("ctrl+z");
    EXPECT_TRUE(waitForMark(100, false));
    EXPECT_TRUE(isMarked(-100));
    editor.press("ctrl+z");
    EXPECT_TRUE(waitForMark(-100, false));
    editor.press("ctrl+shift+z");
    EXPECT_TRUE(waitForMark(-100, true));
    EXPECT_FALSE(isMarked(100));
    editor.press("ctrl+alt+shift+z"); // other keys that are held do not matter
    EXPECT_TRUE(waitForMark(100, true));
}

TEST_F(EditorKeysTest, DeleteAndBackspaceTakeAwayTheSelectedItem)
{
    openEditorWith(1);
    for (const char* key : {"Delete", "BackSpace"}) {
        highlight(-100);
        editor.click(place(-100));
        editor.press(key);
        EXPECT_TRUE(waitForMark(-100, false)) << key;
        editor.press("ctrl+shift+z");
        EXPECT_TRUE(waitForMark(-100, true)) << key;
        editor.press("ctrl+z");
        EXPECT_TRUE(waitForMark(-100, false)) << key;
    }
}

TEST_F(EditorKeysTest, ReturnInAnOpenTextCommitsItAndStays)
{
    openEditorWith(1);
    editor.click(editor.tool(2));
    editor.click(editor.canvas(-100, clearRow));
    editor.type("off by one");
    const auto file = home.optimized() / screenshots[0];
    const auto before = std::filesystem::last_write_time(file);
    editor.press("Return");
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::last_write_time(file) != before; }));
    EXPECT_TRUE(editor.isShown());
    editor.press("Return");
    EXPECT_TRUE(editor.waitUntilGone());
}

TEST_F(EditorKeysTest, ArrowsAndEscapeWorkWhileAButtonHasTheKeyboard)
{
    openEditorWith(2);
    editor.press("Tab");
    editor.press("Left");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    editor.press("Right");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
    editor.press("Up");
    EXPECT_TRUE(editor.waitForCheck(1, false));
    editor.press("Escape");
    EXPECT_TRUE(editor.waitUntilGone());
}

TEST_F(EditorKeysTest, SpaceAndReturnPressTheButtonThatHasTheKeyboard)
{
    openEditorWith(1);
    const Rgb card = editor.pixel(editor.swatchCard());
    for (int i = 0; i < 4; ++i)
        editor.press("Tab");
    editor.press("space"); // redaction has no colour: the card fades away
    EXPECT_TRUE(editor.waitForChange(editor.swatchCard(), card));
    editor.press("shift+Tab");
    editor.press("Return");
    EXPECT_TRUE(editor.waitForPixel(editor.swatchCard(), card));
    EXPECT_TRUE(editor.isShown());
}

TEST_F(EditorKeysTest, TabComesToTheStripAndSpaceChecksThere)
{
    openEditorWith(2);
    for (int i = 0; i < 4 + 2 + 5 + 1; ++i) // tools, undo and redo, colours
        editor.press("Tab");
    editor.press("space");
    EXPECT_TRUE(editor.waitForCheck(1, false));
    editor.press("Left");
    editor.press("space");
    EXPECT_TRUE(editor.waitForCheck(0, false));
    editor.press("Tab"); // round to the canvas
    editor.press("space");
    editor.press("Right");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
    EXPECT_FALSE(editor.showsChecked(0));
}

TEST_F(EditorKeysTest, TheCommandClosesAnOpenEditor)
{
    openEditorWith(2);
    editor.press("Up");
    ASSERT_TRUE(editor.waitForCheck(1, false));
    ASSERT_EQ(command("open"), 0);
    EXPECT_TRUE(editor.waitUntilGone());
    EXPECT_TRUE(waitForClipboard(1));
}

TEST_F(EditorKeysTest, WhatIsConfirmedIsPastedInTheProgramTheUserCameFrom)
{
    const PasteWindow target(server, home);
    const std::string name = activeWindow();
    openEditorWith(2);
    highlight(-100);
    editor.press("Return");
    ASSERT_TRUE(editor.waitUntilGone());
    ASSERT_TRUE(waitForActive(name));
    target.pressPaste();
    // The first one finds nothing if the edit is still being written, and comes again.
    EXPECT_TRUE(
        waitUntil([&] { return !target.pastes().empty() && !target.pastes().back().empty(); }));
    EXPECT_THAT(
        target.pastes().back(),
        ElementsAre(home.optimized() / screenshots[0], home.optimized() / screenshots[1]));
}

// The editor may still be fading out then.
TEST_F(EditorKeysTest, WhatIsConfirmedIsPastedAsSoonAsTheKeyboardIsBack)
{
    const PasteWindow target(server, home);
    const std::string name = activeWindow();
    openEditorWith(2);
    for (int times = 1; times <= 3; ++times) {
        editor.press("Return");
        ASSERT_TRUE(waitForActive(name));
        target.pressPaste();
        ASSERT_TRUE(target.waitForPastes(times));
        EXPECT_EQ(target.pastes().back().size(), 2u);
        ASSERT_TRUE(editor.waitUntilGone());
        openEditor();
    }
}

} // namespace
} // namespace tallowbay::test
