#include "app/ScreenshotBatch.h"

#include "app/ScreenshotBatchFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using ScreenshotBatchTest = ScreenshotBatchFixture;

TEST_F(ScreenshotBatchTest, PutsAScreenshotOnThePasteboard)
{
    take("Screenshot 1.png");
    EXPECT_EQ(batch.urls(), Paths{copyOf("Screenshot 1.png")});
    EXPECT_EQ(desktop.pasteboard.files, Paths{copyOf("Screenshot 1.png")});
    EXPECT_EQ(batch.compressing(), 0);
}

TEST_F(ScreenshotBatchTest, LogsTheSizesInWholeKibibytes)
{
    take("Screenshot 1.png");
    EXPECT_THAT(
        desktop.console.lines,
        ElementsAre("✓ Screenshot 1.png → 812KB → 231KB", "Clipboard updated: 1 image(s)"));
}

TEST_F(ScreenshotBatchTest, LogsZeroForASizeThatCannotBeRead)
{
    desktop.processes.install(desktop.tools.pngquant, [this](const Arguments& arguments) {
        desktop.files.create(arguments.at(3), std::string(2048, 's'));
        desktop.files.remove(arguments.at(5)); // the original, meanwhile
        return 0;
    });
    take("Screenshot 1.png");
    EXPECT_EQ(desktop.console.lines.front(), "✓ Screenshot 1.png → 0KB → 2KB");
}

TEST_F(ScreenshotBatchTest, PutsThreeQuickScreenshotsOnThePasteboardTogether)
{
    accept("Screenshot 1.png");
    accept("Screenshot 2.png");
    accept("Screenshot 3.png");
    EXPECT_EQ(batch.compressing(), 3);
    desktop.dispatch.runUntilIdle();
    const Paths all{
        copyOf("Screenshot 1.png"), copyOf("Screenshot 2.png"), copyOf("Screenshot 3.png")};
    EXPECT_EQ(desktop.pasteboard.files, all);
    EXPECT_THAT(
        views.messages(),
        ElementsAre("1 Screenshot(s) Ready", "2 Screenshot(s) Ready", "3 Screenshot(s) Ready"));
}

TEST_F(ScreenshotBatchTest, RaisesTheCounterBeforeTheJobCanLowerIt)
{
    openEditor();
    int whenItJoins = 7;
    editor.onAdd = [&] { whenItJoins = batch.compressing(); };
    desktop.dispatch.runBackgroundAtOnce();
    accept("Screenshot 1.png");
    EXPECT_EQ(whenItJoins, 0); // and not -1, to be raised afterwards
    EXPECT_EQ(batch.compressing(), 0);
    EXPECT_EQ(batch.urls().size(), 1u);
}

TEST_F(ScreenshotBatchTest, CountsAScreenshotUntilItsResultIsOnTheMainQueue)
{
    accept("Screenshot 1.png");
    int afterTheJob = 0;
    desktop.dispatch.mainAsync([&] { afterTheJob = batch.compressing(); });
    desktop.dispatch.runBackground();
    EXPECT_EQ(afterTheJob, 1);
    EXPECT_EQ(batch.compressing(), 0);
}

TEST_F(ScreenshotBatchTest, CompressesForAUserWhoWatches)
{
    accept("Screenshot 1.png");
    EXPECT_EQ(desktop.dispatch.backgroundQuality(0), QualityOfService::userInteractive);
}

TEST_F(ScreenshotBatchTest, AppendsInTheOrderInWhichCompressionsEnd)
{
    accept("Screenshot 1.png");
    accept("Screenshot 2.png");
    desktop.dispatch.runBackground(1);
    EXPECT_EQ(batch.compressing(), 1);
    desktop.dispatch.runBackground(0);
    EXPECT_EQ(batch.urls(), (Paths{copyOf("Screenshot 2.png"), copyOf("Screenshot 1.png")}));
}

TEST_F(ScreenshotBatchTest, IgnoresAScreenshotThatIsAMinuteOld)
{
    desktop.files.create("/home/u/Desktop/Screenshot 1.png");
    desktop.dispatch.advance(60s);
    take("Screenshot 1.png");
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_EQ(batch.compressing(), 0);
    EXPECT_THAT(desktop.console.lines, IsEmpty());
    EXPECT_THAT(views.toasts, IsEmpty());
    EXPECT_THAT(desktop.processes.journal, IsEmpty());
}

TEST_F(ScreenshotBatchTest, TakesAScreenshotThatIsJustUnderAMinuteOld)
{
    desktop.files.create("/home/u/Desktop/Screenshot 1.png");
    desktop.dispatch.advance(59999ms);
    take("Screenshot 1.png");
    EXPECT_EQ(batch.urls().size(), 1u);
}

TEST_F(ScreenshotBatchTest, IgnoresAFileThatWasCopiedInAndIsTwoMinutesOld)
{
    desktop.files.create("/home/u/Desktop/Screenshot 1.png");
    desktop.files.setCreationDate(
        "/home/u/Desktop/Screenshot 1.png", desktop.clock.wallNow() - 2min);
    take("Screenshot 1.png");
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_EQ(batch.compressing(), 0);
}

TEST_F(ScreenshotBatchTest, IgnoresAScreenshotThatWasRestoredWithItsOldDate)
{
    // The bug: what a backup or an archive brought back was new by its birth, and took the
    // clipboard.
    const auto restored = "/home/u/Desktop/Screenshot 1.png";
    desktop.files.create(restored);
    desktop.files.setModificationDate(restored, desktop.clock.wallNow() - 60s);
    take("Screenshot 1.png");
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_EQ(batch.compressing(), 0);
    EXPECT_THAT(desktop.console.lines, IsEmpty());
    EXPECT_THAT(views.toasts, IsEmpty());
}

TEST_F(ScreenshotBatchTest, TakesAScreenshotBothOfWhoseDatesAreJustUnderAMinuteOld)
{
    const auto file = "/home/u/Desktop/Screenshot 1.png";
    desktop.files.create(file);
    desktop.files.setModificationDate(file, desktop.clock.wallNow() - 59999ms);
    take("Screenshot 1.png");
    EXPECT_EQ(batch.urls().size(), 1u);
}

TEST_F(ScreenshotBatchTest, IgnoresAnOldScreenshotThatIsEditedNow)
{
    desktop.files.create("/home/u/Desktop/Screenshot 1.png");
    desktop.dispatch.advance(60s);
    desktop.files.create("/home/u/Desktop/Screenshot 1.png", "edited");
    take("Screenshot 1.png");
    EXPECT_THAT(batch.urls(), IsEmpty());
}

TEST_F(ScreenshotBatchTest, TakesAFileWithoutACreationDateOrFromTheFuture)
{
    desktop.files.create("/home/u/Desktop/Screenshot 1.png");
    desktop.files.setCreationDate("/home/u/Desktop/Screenshot 1.png", std::nullopt);
    take("Screenshot 1.png");
    desktop.files.create("/home/u/Desktop/Screenshot 2.png");
    desktop.files.setCreationDate("/home/u/Desktop/Screenshot 2.png", desktop.clock.wallNow() + 1h);
    take("Screenshot 2.png");
    EXPECT_EQ(batch.urls().size(), 2u);
}

TEST_F(ScreenshotBatchTest, IgnoresAScreenshotThatWasProcessedBefore)
{
    desktop.files.create(copyOf("Screenshot 1.png"));
    take("Screenshot 1.png");
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_EQ(batch.compressing(), 0);
    EXPECT_THAT(desktop.console.lines, IsEmpty());
    EXPECT_THAT(desktop.processes.journal, IsEmpty());
}

TEST_F(ScreenshotBatchTest, ReportsAFailedCompression)
{
    compressionFails = true;
    take("Screenshot 1.png");
    EXPECT_THAT(batch.urls(), IsEmpty());
    EXPECT_EQ(batch.compressing(), 0);
    EXPECT_THAT(desktop.console.lines, ElementsAre("Compression failed for Screenshot 1.png"));
    EXPECT_THAT(views.messages(), ElementsAre("Compression failed — screenshot skipped"));
    EXPECT_TRUE(desktop.files.exists("/home/u/Desktop/Screenshot 1.png"));
}

TEST_F(ScreenshotBatchTest, ShowsNoToastsIfTheUserWantsNone)
{
    desktop.defaults.standard().set("toastsDisabled", {true});
    take("Screenshot 1.png");
    accept("Screenshot 2.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    batch.undoLastScreenshot();
    batch.clearAllScreenshots();
    compressionFails = true;
    take("Screenshot 3.png");
    EXPECT_THAT(views.toasts, IsEmpty());
    EXPECT_THAT(desktop.console.lines, testing::Contains("Clipboard updated: 1 image(s)"));
}

TEST_F(ScreenshotBatchTest, LogsNamesAsTheyAre)
{
    take("Screenshot 'a\" b.png");
    EXPECT_EQ(desktop.console.lines.front(), "✓ Screenshot 'a\" b.png → 812KB → 231KB");
}

TEST_F(ScreenshotBatchTest, WritesFilesAndNothingElse)
{
    desktop.pasteboard.copyTextElsewhere("old");
    batch.writeClipboard({copyOf("a.png"), copyOf("b.png")});
    EXPECT_EQ(desktop.pasteboard.files, (Paths{copyOf("a.png"), copyOf("b.png")}));
    EXPECT_EQ(desktop.pasteboard.text, "");
    EXPECT_EQ(batch.lastWriteCount(), desktop.pasteboard.changeCount());
    EXPECT_THAT(desktop.console.lines, ElementsAre("Clipboard updated: 2 image(s)"));
}

TEST_F(ScreenshotBatchTest, ClearsThePasteboardForAnEmptyList)
{
    desktop.pasteboard.copyTextElsewhere("old");
    batch.writeClipboard({});
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_EQ(desktop.pasteboard.text, "");
}

TEST_F(ScreenshotBatchTest, AddsScreenshotsToTheEditorOnceItExists)
{
    take("Screenshot 1.png");
    openEditor();
    take("Screenshot 2.png");
    EXPECT_EQ(editor.images, Paths{copyOf("Screenshot 2.png")});
}

TEST_F(ScreenshotBatchTest, ClearsABatchFromThePasteboardAtQuit)
{
    take("Screenshot 1.png");
    batch.clearTallowbayClipboard();
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
}

TEST_F(ScreenshotBatchTest, ClearsThePasteboardAtQuitIfAnyFileIsOurs)
{
    desktop.pasteboard.copyElsewhere({"/etc/hostname", copyOf("Screenshot 1.png")});
    batch.clearTallowbayClipboard();
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
}

TEST_F(ScreenshotBatchTest, LeavesWhatWasCopiedElsewhereAtQuit)
{
    take("Screenshot 1.png");
    desktop.pasteboard.copyElsewhere({"/home/u/Downloads/Tallowbay/optimized elsewhere/a.png"});
    const auto before = desktop.pasteboard.changeCount();
    batch.clearTallowbayClipboard();
    EXPECT_EQ(desktop.pasteboard.changeCount(), before);
    desktop.pasteboard.copyTextElsewhere("text");
    batch.clearTallowbayClipboard();
    EXPECT_EQ(desktop.pasteboard.text, "text");
}

TEST_F(ScreenshotBatchTest, SaysNothingOfACompressionThatTheQuitEnded)
{
    accept("Screenshot 1.png");
    accept("Screenshot 2.png");
    desktop.processes.install(desktop.tools.pngquant, [this](const Arguments&) {
        batch.abandonJobs();
        return 143;
    });
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(desktop.console.lines, IsEmpty());
    EXPECT_THAT(views.toasts, IsEmpty());
    EXPECT_EQ(batch.compressing(), 0);
    // One was under way, and its fallback was tried; the other was not begun.
    EXPECT_EQ(desktop.processes.journal.size(), 2u);
}

TEST_F(ScreenshotBatchTest, MayBeDestroyedWithJobsUnderWay)
{
    auto shortLived = std::make_unique<ScreenshotBatch>(desktop.platform(), toasts, slot, [] {});
    desktop.files.create("/home/u/Desktop/Screenshot 1.png");
    shortLived->acceptScreenshot("/home/u/Desktop/Screenshot 1.png");
    desktop.dispatch.runMain();
    shortLived.reset();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
}

} // namespace
} // namespace tallowbay
