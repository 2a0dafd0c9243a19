#include "app/ScreenshotBatch.h"

#include "app/ScreenshotBatchFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ScreenshotBatchPasteTest = ScreenshotBatchFixture;

TEST_F(ScreenshotBatchPasteTest, ChangesNothingOnAPasteWithoutABatch)
{
    desktop.pasteboard.copyElsewhere({"/etc/hostname"});
    batch.handlePaste();
    EXPECT_EQ(desktop.pasteboard.files, Paths{"/etc/hostname"});
    EXPECT_THAT(desktop.console.lines, IsEmpty());
    take("Screenshot 1.png");
    EXPECT_THAT(pasted, IsEmpty());
}

TEST_F(ScreenshotBatchPasteTest, EndsTheBatchOnAPasteAndLeavesItOnThePasteboard)
{
    take("Screenshot 1.png");
    take("Screenshot 2.png");
    batch.handlePaste();
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_EQ(desktop.pasteboard.files.size(), 2u);
    EXPECT_EQ(desktop.console.lines.back(), ">>> resetBatch — clearing 2 URL(s), 0 OCR text(s)");
    EXPECT_THAT(pasted, IsEmpty());
}

TEST_F(ScreenshotBatchPasteTest, BeginsANewBatchAfterAPaste)
{
    take("Screenshot 1.png");
    batch.handlePaste();
    take("Screenshot 2.png");
    EXPECT_EQ(desktop.pasteboard.files, Paths{copyOf("Screenshot 2.png")});
}

TEST_F(ScreenshotBatchPasteTest, HoldsAPasteThatComesDuringCompression)
{
    take("Screenshot 1.png");
    accept("Screenshot 2.png");
    batch.handlePaste();
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_EQ(batch.urls().size(), 1u);
    EXPECT_EQ(
        desktop.console.lines.back(),
        ">>> CMD+V QUEUED — clipboard cleared, waiting for compression");
    desktop.dispatch.runMain();
    EXPECT_EQ(views.messages().back(), "Pasting...");
}

TEST_F(ScreenshotBatchPasteTest, FiresAHeldPasteWithTheWholeBatchAndResetsIt)
{
    take("Screenshot 1.png");
    accept("Screenshot 2.png");
    batch.handlePaste();
    desktop.console.lines.clear();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(
        pasted, ElementsAre(ElementsAre(copyOf("Screenshot 1.png"), copyOf("Screenshot 2.png"))));
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_THAT(
        desktop.console.lines,
        ElementsAre(
            "✓ Screenshot 2.png → 812KB → 231KB", "Clipboard updated: 2 image(s)",
            ">>> Firing queued paste with 2 image(s)",
            ">>> resetBatch — clearing 2 URL(s), 0 OCR text(s)"));

    take("Screenshot 3.png");
    EXPECT_EQ(pasted.size(), 1u);
}

TEST_F(ScreenshotBatchPasteTest, LetsTheUsersOwnPasteWaitForTheWholeBatch)
{
    desktop.pasteboard.holdsPastes = true;
    accept("Screenshot 1.png");
    accept("Screenshot 2.png");
    batch.handlePaste();
    desktop.pasteboard.askForFiles();
    desktop.dispatch.runBackground(1);
    EXPECT_FALSE(desktop.pasteboard.given);
    desktop.windowSystem.active = 7; // it goes where it was pressed all the same
    desktop.dispatch.runUntilIdle();
    ASSERT_TRUE(desktop.pasteboard.given);
    EXPECT_EQ(desktop.pasteboard.given->size(), 2u);
    EXPECT_THAT(pasted, IsEmpty()) << "it would be a second one";
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_EQ(
        desktop.console.lines[desktop.console.lines.size() - 2],
        ">>> Queued paste has waited for 2 image(s)");
}

// Bug: it was fired beside the user's own, and all arrived twice.
TEST_F(ScreenshotBatchPasteTest, FiresNothingIfTheUsersOwnPasteComesAfterTheBatchIsComplete)
{
    desktop.pasteboard.holdsPastes = true;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(pasted, IsEmpty()) << "it may come yet";
    EXPECT_EQ(batch.urls().size(), 1u);

    desktop.pasteboard.askForFiles();
    EXPECT_EQ(desktop.pasteboard.given, Paths{copyOf("Screenshot 1.png")});
    EXPECT_THAT(batch.urls(), IsEmpty());
    desktop.pasteboard.endPatience();
    EXPECT_THAT(pasted, IsEmpty());
}

TEST_F(ScreenshotBatchPasteTest, FiresThePasteIfTheUsersOwnNeverComes)
{
    desktop.pasteboard.holdsPastes = true;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    desktop.pasteboard.endPatience();
    EXPECT_THAT(pasted, ElementsAre(ElementsAre(copyOf("Screenshot 1.png"))));
    EXPECT_THAT(batch.urls(), IsEmpty());
}

TEST_F(ScreenshotBatchPasteTest, EndsTheBatchOnceForAPressAfterItIsComplete)
{
    desktop.pasteboard.holdsPastes = true;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    batch.handlePaste();
    EXPECT_EQ(batch.urls().size(), 1u) << "neither has asked";
    desktop.pasteboard.endPatience();
    EXPECT_EQ(pasted.size(), 1u);
    EXPECT_THAT(batch.urls(), IsEmpty());
}

TEST_F(ScreenshotBatchPasteTest, FiresNothingOnceTheUserHasPastedElsewhere)
{
    desktop.pasteboard.holdsPastes = true;
    desktop.windowSystem.active = 5;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    desktop.windowSystem.active = 7;
    batch.handlePaste();
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_FALSE(desktop.pasteboard.holdsPaste());
    desktop.windowSystem.active = 5;
    desktop.pasteboard.endPatience();
    EXPECT_THAT(pasted, IsEmpty());
}

TEST_F(ScreenshotBatchPasteTest, FiresNothingOfWhatHasBeenCopiedElsewhereMeanwhile)
{
    desktop.pasteboard.holdsPastes = true;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    desktop.pasteboard.copyTextElsewhere("a secret");
    EXPECT_THAT(pasted, IsEmpty());
    EXPECT_EQ(
        desktop.console.lines.back(),
        ">>> Queued paste not fired — something else has been copied");
    EXPECT_EQ(batch.urls().size(), 1u);
}

TEST_F(ScreenshotBatchPasteTest, FiresNothingOfWhatHasBeenCopiedElsewhereThisMoment)
{
    desktop.pasteboard.holdsPastes = true;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    desktop.pasteboard.files = {"/etc/hostname"}; // nobody was told yet
    desktop.pasteboard.endPatience();
    EXPECT_THAT(pasted, IsEmpty());
    EXPECT_EQ(batch.urls().size(), 1u);
}

TEST_F(ScreenshotBatchPasteTest, FiresNothingOfWhatIsUndoneMeanwhile)
{
    desktop.pasteboard.holdsPastes = true;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    batch.undoLastScreenshot();
    desktop.pasteboard.endPatience();
    EXPECT_THAT(pasted, IsEmpty());

    accept("Screenshot 2.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    batch.clearAllScreenshots();
    EXPECT_FALSE(desktop.pasteboard.holdsPaste()) << "the next one may be of something else";

    accept("Screenshot 3.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    batch.endTextExtraction("a text");
    EXPECT_FALSE(desktop.pasteboard.holdsPaste());
    EXPECT_THAT(pasted, IsEmpty());
}

TEST_F(ScreenshotBatchPasteTest, HoldsAPasteAnewForWhatBeganMeanwhile)
{
    desktop.pasteboard.holdsPastes = true;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    accept("Screenshot 2.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    desktop.pasteboard.askForFiles();
    EXPECT_EQ(desktop.pasteboard.given, Paths()) << "both would insert all";
    desktop.pasteboard.endPatience();
    EXPECT_THAT(
        pasted, ElementsAre(ElementsAre(copyOf("Screenshot 1.png"), copyOf("Screenshot 2.png"))));
}

TEST_F(ScreenshotBatchPasteTest, FiresThePasteIfTheUsersOwnCouldWaitNoLonger)
{
    desktop.pasteboard.holdsPastes = true;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.pasteboard.askForFiles();
    desktop.pasteboard.endPatience();
    EXPECT_THAT(*desktop.pasteboard.given, IsEmpty());
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(pasted, ElementsAre(ElementsAre(copyOf("Screenshot 1.png"))));
}

TEST_F(ScreenshotBatchPasteTest, FiresNothingIntoAnotherWindowAndKeepsTheBatch)
{
    desktop.windowSystem.active = 5;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.windowSystem.active = 7;
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(pasted, IsEmpty());
    EXPECT_EQ(views.messages().back(), "Ready — paste again");
    EXPECT_EQ(desktop.pasteboard.files, Paths{copyOf("Screenshot 1.png")});
    EXPECT_EQ(batch.urls().size(), 1u);
    EXPECT_EQ(
        desktop.console.lines.back(), ">>> Queued paste not fired — another window is active");

    batch.handlePaste();
    EXPECT_THAT(batch.urls(), IsEmpty()) << "the user has pasted again";
    EXPECT_EQ(desktop.pasteboard.files, Paths{copyOf("Screenshot 1.png")});
}

TEST_F(ScreenshotBatchPasteTest, FiresIntoTheWindowOfTheLastPress)
{
    desktop.windowSystem.active = 5;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.windowSystem.active = 7;
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(pasted.size(), 1u);
}

TEST_F(ScreenshotBatchPasteTest, FiresIntoAWindowThatTheUserCameBackTo)
{
    desktop.windowSystem.active = 5;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.windowSystem.active = 7;
    desktop.dispatch.runMain();
    desktop.windowSystem.active = 5;
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(pasted.size(), 1u);
}

TEST_F(ScreenshotBatchPasteTest, FiresNothingOnceTheWindowIsGone)
{
    desktop.windowSystem.active = 5;
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.windowSystem.active = 0;
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(pasted, IsEmpty());
    EXPECT_EQ(batch.urls().size(), 1u);
}

TEST_F(ScreenshotBatchPasteTest, FiresAHeldPasteOnlyWhenTheLastCompressionEnds)
{
    accept("Screenshot 1.png");
    accept("Screenshot 2.png");
    batch.handlePaste();
    desktop.dispatch.runBackground(1);
    EXPECT_THAT(pasted, IsEmpty());
    desktop.dispatch.runBackground(0);
    EXPECT_EQ(pasted.size(), 1u);
}

TEST_F(ScreenshotBatchPasteTest, FiresOnePasteForTwoPresses)
{
    accept("Screenshot 1.png");
    batch.handlePaste();
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(pasted.size(), 1u);
}

TEST_F(ScreenshotBatchPasteTest, KeepsAHeldPasteForTheNextScreenshotIfTheLastOneFails)
{
    accept("Screenshot 1.png");
    batch.handlePaste();
    compressionFails = true;
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(pasted, IsEmpty());

    compressionFails = false;
    take("Screenshot 2.png");
    EXPECT_THAT(pasted, ElementsAre(ElementsAre(copyOf("Screenshot 2.png"))));
}

TEST_F(ScreenshotBatchPasteTest, FiresAHeldPasteDuringTextRecognitionAndKeepsTheBatch)
{
    accept("Screenshot 1.png");
    batch.handlePaste();
    batch.beginTextExtraction();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(pasted.size(), 1u);
    EXPECT_EQ(batch.urls().size(), 1u);
    EXPECT_EQ(desktop.console.lines.back(), ">>> resetBatch SKIPPED — OCR in progress");
}

TEST_F(ScreenshotBatchPasteTest, KeepsAHeldPasteIfTheLastScreenshotIsSkipped)
{
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.files.create(copyOf("Screenshot 1.png"));
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(pasted, IsEmpty());

    take("Screenshot 2.png");
    EXPECT_THAT(pasted, ElementsAre(ElementsAre(copyOf("Screenshot 2.png"))));
}

// A paste while an edit is being written

TEST_F(ScreenshotBatchPasteTest, KeepsTheBatchWhileTextIsBeingRecognised)
{
    take("Screenshot 1.png");
    batch.beginTextExtraction();
    batch.resetBatch();
    EXPECT_EQ(batch.urls().size(), 1u);
    EXPECT_EQ(desktop.console.lines.back(), ">>> resetBatch SKIPPED — OCR in progress");
}

TEST_F(ScreenshotBatchPasteTest, SaysEvenOfAnEmptyBatchThatItIsKept)
{
    batch.beginTextExtraction();
    batch.resetBatch();
    EXPECT_THAT(desktop.console.lines, ElementsAre(">>> resetBatch SKIPPED — OCR in progress"));
}

TEST_F(ScreenshotBatchPasteTest, ResetsABatchOfTextsAlone)
{
    batch.endTextExtraction("a");
    batch.endTextExtraction("b");
    batch.resetBatch();
    EXPECT_THAT(
        desktop.console.lines, ElementsAre(">>> resetBatch — clearing 0 URL(s), 2 OCR text(s)"));
}

TEST_F(ScreenshotBatchPasteTest, ResetsScreenshotsAndTextsTogether)
{
    take("Screenshot 1.png");
    take("Screenshot 2.png");
    batch.endTextExtraction("some text");
    batch.resetBatch();
    EXPECT_EQ(desktop.console.lines.back(), ">>> resetBatch — clearing 2 URL(s), 1 OCR text(s)");
    EXPECT_EQ(desktop.pasteboard.text, "some text");
    EXPECT_EQ(batch.endTextExtraction("another"), 1u);
}

TEST_F(ScreenshotBatchPasteTest, StartsANewGroupInTheEditorAfterAReset)
{
    openEditor();
    take("Screenshot 1.png");
    EXPECT_FALSE(editor.pendingDivider);
    batch.resetBatch();
    EXPECT_TRUE(editor.pendingDivider);
}

TEST_F(ScreenshotBatchPasteTest, StartsNoGroupInAnEmptyEditor)
{
    take("Screenshot 1.png");
    openEditor();
    batch.resetBatch();
    EXPECT_FALSE(editor.pendingDivider);
}

} // namespace
} // namespace tallowbay
