#include "desktop/program/EditorFixture.h"

namespace tallowbay::test {
namespace {

// What the mouse does in the editor.
class EditorMouseTest : public EditorFixture {
protected:
    EditorMouseTest() { server.startWindowManager(); }

    Rgb at(int x) const { return editor.pixel(editor.canvas(x, clearRow)); }
    void dragAt(int x) const
    {
        editor.drag(editor.canvas(x - 15, clearRow - 15), editor.canvas(x + 15, clearRow + 15));
    }
    bool waitForMark(int x) const
    {
        return editor.waitForChange(editor.canvas(x, clearRow), pictureColor());
    }
};

TEST_F(EditorMouseTest, AClickOnACellSelectsItAndNothingElse)
{
    openEditorWith(3);
    editor.click(editor.cell(0));
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    EXPECT_TRUE(editor.showsChecked(0));
    editor.click(editor.cell(1));
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
}

TEST_F(EditorMouseTest, AClickOnTheCheckBoxTogglesItAndNothingElse)
{
    openEditorWith(3);
    editor.click(editor.checkbox(0));
    EXPECT_TRUE(editor.waitForCheck(0, false));
    EXPECT_TRUE(waitForClipboard(2));
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[2]));
    editor.click(editor.checkbox(0));
    EXPECT_TRUE(editor.waitForCheck(0, true));
}

TEST_F(EditorMouseTest, WithNothingCheckedTheClipboardHoldsAll)
{
    openEditorWith(2);
    editor.click(editor.checkbox(0));
    ASSERT_TRUE(waitForClipboard(1));
    editor.click(editor.checkbox(1));
    EXPECT_TRUE(waitForClipboard(2));
}

TEST_F(EditorMouseTest, ToolsAndColoursAreTakenByAClick)
{
    openEditorWith(1);
    editor.click(editor.swatch(2)); // blue
    dragAt(-150);
    ASSERT_TRUE(waitForMark(-150));
    EXPECT_GT(at(-150) & 0xff, at(-150) >> 16) << "more blue than red";
    editor.click(editor.swatch(3)); // red
    dragAt(150);
    ASSERT_TRUE(waitForMark(150));
    EXPECT_GT(at(150) >> 16, at(150) & 0xff);
    editor.click(editor.tool(3)); // redaction
    dragAt(0);
    ASSERT_TRUE(waitForMark(0));
}

TEST_F(EditorMouseTest, UndoAndRedoAreButtonsToo)
{
    openEditorWith(1);
    dragAt(0);
    ASSERT_TRUE(waitForMark(0));
    editor.click(editor.tool(4));
    EXPECT_TRUE(editor.waitForPixel(editor.canvas(0, clearRow), pictureColor()));
    editor.click(editor.tool(5));
    EXPECT_TRUE(waitForMark(0));
}

TEST_F(EditorMouseTest, AClickOnAButtonLeavesTheKeyboardToTheCanvas)
{
    openEditorWith(1);
    dragAt(0);
    ASSERT_TRUE(waitForMark(0));
    editor.click(editor.canvas(0, clearRow)); // which selects the item
    editor.click(editor.tool(1));
    editor.press("Delete");
    EXPECT_TRUE(editor.waitForPixel(editor.canvas(0, clearRow), pictureColor()));
}

TEST_F(EditorMouseTest, TheEditIsInTheFile)
{
    openEditorWith(1);
    const auto file = home.optimized() / screenshots[0];
    const auto before = std::filesystem::last_write_time(file);
    dragAt(0);
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::last_write_time(file) != before; }));
}

TEST_F(EditorMouseTest, RightAndDoubleClicksLeaveNothingStuck)
{
    openEditorWith(2);
    for (const Place place :
         {editor.canvas(0, clearRow), editor.cell(0), editor.tool(1), editor.header(),
          editor.swatch(1)}) {
        editor.click(place, 3);
        editor.click(place, 2);
    }
    editor.click(editor.tool(0));
    server.run({"xdotool", "click", "--repeat", "2", "--delay", "20", "1"});
    editor.press("Right");
    ASSERT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
    dragAt(100);
    EXPECT_TRUE(waitForMark(100));
    editor.press("Escape");
    EXPECT_TRUE(editor.waitUntilGone());
}

TEST_F(EditorMouseTest, ADragBeyondTheCanvasEndsWhereTheButtonIsLeftGo)
{
    openEditorWith(1);
    editor.drag(editor.canvas(0, clearRow - 15), {1279, 799});
    ASSERT_TRUE(waitForMark(40));
    editor.press("ctrl+z");
    EXPECT_TRUE(editor.waitForPixel(editor.canvas(40, clearRow), pictureColor()));
}

TEST_F(EditorMouseTest, ADragThatTheEditorIsClosedUnderLeavesNoGrab)
{
    openEditorWith(1);
    const Place start = editor.canvas(0, clearRow);
    server.run(
        {"xdotool", "mousemove", std::to_string(start.x), std::to_string(start.y), "mousedown", "1",
         "mousemove_relative", "40", "20"});
    editor.press("Escape");
    ASSERT_TRUE(editor.waitUntilGone());
    server.run({"xdotool", "mouseup", "1"});
    openEditor();
    ASSERT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    dragAt(100);
    EXPECT_TRUE(waitForMark(100));
}

TEST_F(EditorMouseTest, TheStripScrollsByWheelAndByDragging)
{
    openEditorWith(8); // the screen has room for five and a half
    const Rgb first = EditorScreen::headers[0];
    const Place corner = editor.cell(0) + Place{0, -90}; // of the first cell's header
    ASSERT_FALSE(editor.pixel(corner) == first) << "the last one is scrolled to";
    server.run({"xdotool", "mousemove", "600", "700", "click", "--repeat", "9", "4"});
    EXPECT_TRUE(editor.waitForPixel(corner, first));
    editor.drag(editor.cell(3), editor.cell(1));
    EXPECT_TRUE(editor.waitForChange(corner, first));
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[7 % 5])) << "a drag is no click";
}

TEST_F(EditorMouseTest, TheSelectedCellGlidesIntoView)
{
    openEditorWith(8);
    for (int i = 0; i < 7; ++i)
        editor.press("Left");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    EXPECT_TRUE(editor.waitForCheck(0, true)) << "it is at the left";
}

// While it is open.

TEST_F(EditorMouseTest, ANewScreenshotIsShownAtOnceAndItsToastAboveAll)
{
    openEditorWith(1);
    ASSERT_TRUE(waitUntil([this] { return !editor.showsToast(); }));
    screenshots.push_back(home.takeScreenshot(++taken).filename());
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[1]));
    EXPECT_TRUE(waitUntil([this] { return editor.showsToast(); }));
    EXPECT_TRUE(waitForClipboard(2));
}

TEST_F(EditorMouseTest, AnEmptyEditorTakesNoTool)
{
    launch();
    openEditor();
    constexpr Rgb glassOverBlack = 0x333333;
    const Rgb card = glassOverBlack; // where the colours will be
    ASSERT_TRUE(editor.waitForPixel(editor.swatchCard(), card));
    for (int tag = 0; tag < 6; ++tag)
        editor.click(editor.tool(tag));
    editor.press("Left");
    editor.press("Up");
    takeScreenshots(1);
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    EXPECT_TRUE(editor.waitForChange(editor.swatchCard(), card));
    dragAt(0);
    EXPECT_TRUE(waitForMark(0));
    EXPECT_NE(at(0), 0u) << "highlighted, not redacted";
}

} // namespace
} // namespace tallowbay::test
