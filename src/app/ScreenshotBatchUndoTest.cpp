#include "app/ScreenshotBatch.h"

#include "app/ScreenshotBatchFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ScreenshotBatchUndoTest = ScreenshotBatchFixture;

TEST_F(ScreenshotBatchUndoTest, UndoRemovesTheLastScreenshotAndKeepsItsFile)
{
    take("Screenshot 1.png");
    take("Screenshot 2.png");
    batch.undoLastScreenshot();
    desktop.dispatch.runMain();
    EXPECT_EQ(batch.urls(), Paths{copyOf("Screenshot 1.png")});
    EXPECT_EQ(desktop.pasteboard.files, Paths{copyOf("Screenshot 1.png")});
    EXPECT_EQ(views.messages().back(), "Last screenshot removed");
    EXPECT_TRUE(desktop.files.exists(copyOf("Screenshot 2.png")));
}

TEST_F(ScreenshotBatchUndoTest, UndoOfTheOnlyScreenshotEmptiesThePasteboard)
{
    take("Screenshot 1.png");
    batch.undoLastScreenshot();
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_EQ(desktop.console.lines.back(), "Clipboard updated: 0 image(s)");
}

TEST_F(ScreenshotBatchUndoTest, UndoWithoutAScreenshotSaysSoAndLeavesThePasteboardAlone)
{
    desktop.pasteboard.copyElsewhere({"/etc/hostname"});
    batch.undoLastScreenshot();
    desktop.dispatch.runMain();
    EXPECT_THAT(views.messages(), ElementsAre("Nothing to undo"));
    EXPECT_EQ(desktop.pasteboard.files, Paths{"/etc/hostname"});
    EXPECT_THAT(desktop.console.lines, IsEmpty());
}

TEST_F(ScreenshotBatchUndoTest, UndoWithAnEditorLeavesThePasteboardToItsCheckMarks)
{
    openEditor();
    take("Screenshot 1.png");
    take("Screenshot 2.png");
    batch.addToClipboard(copyOf("Screenshot 2.png")); // twice in the batch
    editor.checked = {"/elsewhere/older.png", copyOf("Screenshot 2.png")};
    batch.undoLastScreenshot();
    desktop.dispatch.runMain();
    EXPECT_EQ(batch.urls(), Paths{copyOf("Screenshot 1.png")});
    EXPECT_EQ(desktop.pasteboard.files, Paths{"/elsewhere/older.png"});
    EXPECT_EQ(views.messages().back(), "Last screenshot removed");
}

TEST_F(ScreenshotBatchUndoTest, UndoWithAnEditorThatHasNothingCheckedSaysSo)
{
    openEditor();
    take("Screenshot 1.png");
    editor.checked.clear();
    batch.undoLastScreenshot();
    desktop.dispatch.runMain();
    EXPECT_EQ(views.messages().back(), "Nothing to undo");
    EXPECT_EQ(batch.urls().size(), 1u);
}

TEST_F(ScreenshotBatchUndoTest, ClearEmptiesThePasteboardAndTheBatchButKeepsTheTexts)
{
    take("Screenshot 1.png");
    batch.endTextExtraction("some text");
    batch.clearAllScreenshots();
    desktop.dispatch.runMain();
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_EQ(desktop.pasteboard.text, "");
    EXPECT_EQ(views.messages().back(), "Clipboard cleared");
    EXPECT_EQ(batch.endTextExtraction("more"), 2u);
    EXPECT_EQ(desktop.pasteboard.text, "some text\n\nmore");
}

TEST_F(ScreenshotBatchUndoTest, ClearUnchecksTheEditorsScreenshotsAndStartsANewGroup)
{
    openEditor();
    take("Screenshot 1.png");
    batch.clearAllScreenshots();
    EXPECT_THAT(editor.checked, IsEmpty());
    EXPECT_TRUE(editor.pendingDivider);
}

TEST_F(ScreenshotBatchUndoTest, ClearStartsNoGroupInAnEmptyEditor)
{
    openEditor();
    batch.clearAllScreenshots();
    EXPECT_FALSE(editor.pendingDivider);
}

} // namespace
} // namespace tallowbay
