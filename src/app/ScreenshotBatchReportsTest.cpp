#include "app/ScreenshotBatch.h"

#include "app/ScreenshotBatchFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using ScreenshotBatchReportsTest = ScreenshotBatchFixture;

TEST_F(ScreenshotBatchReportsTest, AddsAScreenshotOnceThatIsReportedAgainWhileItIsBeingCompressed)
{
    // The bug: neither of two jobs side by side saw a copy yet, and each added one.
    accept("Screenshot 1.png");
    desktop.dispatch.advance(4s);
    accept("Screenshot 1.png");
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 1u);
    EXPECT_EQ(batch.compressing(), 1);
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(batch.urls(), Paths{copyOf("Screenshot 1.png")});
    EXPECT_EQ(desktop.processes.journal.size(), 1u);
    EXPECT_EQ(batch.compressing(), 0);
}

TEST_F(ScreenshotBatchReportsTest, FiresAHeldPasteOfAScreenshotThatWasReportedAgain)
{
    accept("Screenshot 1.png");
    accept("Screenshot 1.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(pasted, ElementsAre(ElementsAre(copyOf("Screenshot 1.png"))));
}

TEST_F(ScreenshotBatchReportsTest, TriesAScreenshotAgainThatWasReportedAgainBeforeItFailed)
{
    accept("Screenshot 1.png");
    accept("Screenshot 1.png");
    compressionFails = true;
    desktop.dispatch.runBackground();
    EXPECT_EQ(batch.compressing(), 1);
    compressionFails = false;
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(batch.urls(), Paths{copyOf("Screenshot 1.png")});
    EXPECT_EQ(batch.compressing(), 0);
    EXPECT_THAT(
        desktop.console.lines,
        ElementsAre(
            "Compression failed for Screenshot 1.png", "✓ Screenshot 1.png → 812KB → 231KB",
            "Clipboard updated: 1 image(s)"));
}

TEST_F(ScreenshotBatchReportsTest, TakesTwoScreenshotsOfOneNameForOneWhileTheFirstIsBeingCompressed)
{
    accept("Screenshot 1.png");
    accept("sub/Screenshot 1.png");
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(batch.urls(), Paths{copyOf("Screenshot 1.png")});
}

TEST_F(ScreenshotBatchReportsTest, AddsAScreenshotOnceThatIsRenamedQuickly)
{
    // The bug: under its new name the same picture was compressed again, and joined the batch
    // again.
    take("Screenshot 1.png");
    desktop.dispatch.advance(2900ms);
    rename("Screenshot 1.png", "Screenshot of a bug.png");
    take("Screenshot of a bug.png");
    rename("Screenshot of a bug.png", "Screenshot of the bug.png");
    take("Screenshot of the bug.png");
    EXPECT_EQ(batch.urls(), Paths{copyOf("Screenshot 1.png")});
    EXPECT_EQ(desktop.processes.journal.size(), 1u);
    EXPECT_EQ(batch.compressing(), 0);
}

TEST_F(ScreenshotBatchReportsTest, AddsAScreenshotOnceThatIsRenamedWhileItIsBeingCompressed)
{
    accept("Screenshot 1.png");
    rename("Screenshot 1.png", "Screenshot of a bug.png");
    accept("Screenshot of a bug.png");
    EXPECT_EQ(batch.compressing(), 1);
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(pasted, ElementsAre(ElementsAre(copyOf("Screenshot 1.png"))));
    EXPECT_EQ(batch.compressing(), 0);
}

TEST_F(ScreenshotBatchReportsTest, LosesNoScreenshotThatIsRenamedBeforeTheToolHasReadIt)
{
    compressionNeedsItsInput = true;
    accept("Screenshot 1.png");
    rename("Screenshot 1.png", "Screenshot of a bug.png");
    accept("Screenshot of a bug.png");
    batch.handlePaste();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(pasted, std::vector<Paths>{{copyOf("Screenshot of a bug.png")}});
    EXPECT_EQ(batch.compressing(), 0);
    EXPECT_THAT(views.messages(), testing::Not(testing::Contains(testing::HasSubstr("skipped"))));
}

TEST_F(ScreenshotBatchReportsTest, LosesNoScreenshotWhoseNewNameIsReportedAfterTheOldOneFailed)
{
    compressionNeedsItsInput = true;
    accept("Screenshot 1.png");
    rename("Screenshot 1.png", "Screenshot of a bug.png");
    desktop.dispatch.runUntilIdle();
    take("Screenshot of a bug.png");
    EXPECT_EQ(batch.urls(), Paths{copyOf("Screenshot of a bug.png")});
}

TEST_F(ScreenshotBatchReportsTest, TakesAScreenshotForAnotherOnceItIsRenamedLater)
{
    take("Screenshot 1.png");
    desktop.dispatch.advance(4s);
    rename("Screenshot 1.png", "Screenshot of a bug.png");
    take("Screenshot of a bug.png");
    EXPECT_EQ(batch.urls().size(), 2u);
}

TEST_F(ScreenshotBatchReportsTest, TakesACopyAndAFurtherNameForScreenshotsOfTheirOwn)
{
    take("Screenshot 1.png");
    desktop.files.create(
        "/home/u/Desktop/Screenshot 1 copy.png",
        *desktop.files.read("/home/u/Desktop/Screenshot 1.png"));
    take("Screenshot 1 copy.png");
    desktop.files.link(
        "/home/u/Desktop/Screenshot 1.png", "/home/u/Desktop/Screenshot further.png");
    take("Screenshot further.png");
    EXPECT_EQ(batch.urls().size(), 3u);
}

TEST_F(ScreenshotBatchReportsTest, TakesANewScreenshotUnderTheNameThatARenamedOneHad)
{
    take("Screenshot 1.png");
    rename("Screenshot 1.png", "Screenshot of a bug.png");
    desktop.files.create("/home/u/Desktop/Screenshot 1.png");
    take("Screenshot of a bug.png");
    EXPECT_EQ(batch.urls().size(), 1u);
    rename("Screenshot 1.png", "Screenshot 2.png");
    take("Screenshot 2.png");
    EXPECT_EQ(batch.urls(), (Paths{copyOf("Screenshot 1.png"), copyOf("Screenshot 2.png")}));
}

TEST_F(ScreenshotBatchReportsTest, BeginsNoJobAnewAtQuit)
{
    accept("Screenshot 1.png");
    accept("Screenshot 1.png");
    batch.abandonJobs();
    desktop.dispatch.runBackground();
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
    EXPECT_EQ(batch.compressing(), 0);
}

} // namespace
} // namespace tallowbay
