#include "app/OCRTrigger.h"

#include "app/ScreenshotBatch.h"
#include "editor/EditorSlot.h"
#include "platform/headless/Desktop.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Arguments = std::vector<std::string>;

const std::filesystem::path screenshot = "/home/u/Downloads/Tallowbay/optimized/Screenshot 1.png";

class OCRTriggerTest : public testing::Test {
protected:
    OCRTriggerTest()
    {
        desktop.processes.install(desktop.tools.screencapture, [this](const Arguments& arguments) {
            if (cancelled)
                return 1;
            desktop.files.create(
                arguments.at(1), *desktop.imageCodec.encodePng(Bitmap(PixelSize{2, 2})));
            return 0;
        });
    }

    void capture(const std::string& text)
    {
        desktop.textRecognizer.willFindLines({text});
        trigger->triggerOCR();
        desktop.dispatch.runUntilIdle();
    }

    void cancel()
    {
        cancelled = true;
        trigger->triggerOCR();
        desktop.dispatch.runUntilIdle();
    }

    // Of a batch with a screenshot.
    bool aPasteEndsTheBatch()
    {
        EXPECT_THAT(batch.urls(), ElementsAre(screenshot));
        batch.handlePaste();
        return batch.urls().empty();
    }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    bool cancelled = false;
    EditorSlot slot; // without an editor
    ToastPresenter toastPresenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate toasts{desktop.defaults.standard(), toastPresenter};
    ScreenshotBatch batch{desktop.platform(), toasts, slot, [] {}};
    std::unique_ptr<OCRTrigger> trigger =
        std::make_unique<OCRTrigger>(desktop.platform(), toasts, batch);
};

TEST_F(OCRTriggerTest, PutsTheTextOnThePasteboard)
{
    capture("Hello");
    EXPECT_EQ(desktop.pasteboard.text, "Hello");
    EXPECT_THAT(views.messages(), ElementsAre("1 Text(s) Copied"));
}

TEST_F(OCRTriggerTest, RecordsItsOwnWrite)
{
    capture("Hello");
    EXPECT_EQ(batch.lastWriteCount(), desktop.pasteboard.changeCount());
    EXPECT_GT(batch.lastWriteCount(), 0);
}

TEST_F(OCRTriggerTest, GathersTheTextsOfABatchWithABlankLineBetween)
{
    capture("First\ntext");
    capture("Second");
    EXPECT_EQ(desktop.pasteboard.text, "First\ntext\n\nSecond");
    EXPECT_THAT(views.messages(), ElementsAre("1 Text(s) Copied", "2 Text(s) Copied"));
}

TEST_F(OCRTriggerTest, StartsANewListAfterThePasteThatEndsTheBatch)
{
    capture("First");
    batch.handlePaste();
    capture("Second");
    EXPECT_EQ(desktop.pasteboard.text, "Second");
    EXPECT_EQ(views.messages().back(), "1 Text(s) Copied");
}

TEST_F(OCRTriggerTest, ReplacesTheScreenshotsOnThePasteboardAndKeepsThemInTheBatch)
{
    batch.addToClipboard(screenshot);
    capture("Hello");
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_EQ(desktop.pasteboard.text, "Hello");
    EXPECT_THAT(batch.urls(), ElementsAre(screenshot));
}

TEST_F(OCRTriggerTest, LeavesThePasteboardAloneWhenTheUserCancels)
{
    batch.addToClipboard(screenshot);
    const auto count = desktop.pasteboard.changeCount();
    cancel();
    EXPECT_EQ(desktop.pasteboard.changeCount(), count);
    EXPECT_THAT(desktop.pasteboard.files, ElementsAre(screenshot));
    EXPECT_EQ(views.messages().back(), "No Text Found");
}

TEST_F(OCRTriggerTest, TakesAnEmptyTextForNone)
{
    capture("");
    EXPECT_EQ(desktop.pasteboard.changeCount(), 0);
    EXPECT_THAT(views.messages(), ElementsAre("No Text Found"));
}

TEST_F(OCRTriggerTest, WritesThePasteboardWithoutToastsIfTheUserWantsNone)
{
    desktop.defaults.standard().set("toastsDisabled", {true});
    capture("Hello");
    cancel();
    EXPECT_EQ(desktop.pasteboard.text, "Hello");
    EXPECT_THAT(views.toasts, IsEmpty());
}

TEST_F(OCRTriggerTest, RefusesToResetTheBatchFromTheHotkeyToTheEnd)
{
    batch.addToClipboard(screenshot);
    trigger->triggerOCR();
    EXPECT_FALSE(aPasteEndsTheBatch());

    desktop.dispatch.runUntilIdle();
    EXPECT_TRUE(aPasteEndsTheBatch());
}

TEST_F(OCRTriggerTest, EndsTheCaptureWhenTheUserCancelsOrTheRecogniserThrows)
{
    batch.addToClipboard(screenshot);
    cancel();
    EXPECT_TRUE(aPasteEndsTheBatch());
    cancelled = false;
    batch.addToClipboard(screenshot);
    desktop.textRecognizer.willThrow();
    trigger->triggerOCR();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(views.messages().back(), "No Text Found");
    EXPECT_TRUE(aPasteEndsTheBatch());
}

TEST_F(OCRTriggerTest, KeepsATextThatCameBeforeACancelledCapture)
{
    capture("First");
    cancel();
    cancelled = false;
    capture("Second");
    EXPECT_EQ(desktop.pasteboard.text, "First\n\nSecond");
}

// Asked for by command, a second selection covered the first, with a picture of it.
TEST_F(OCRTriggerTest, ShowsOneSelectionHoweverOftenItIsAskedFor)
{
    desktop.textRecognizer.willFindLines({"Hello"});
    EXPECT_TRUE(trigger->triggerOCR());
    EXPECT_TRUE(trigger->triggerOCR());
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(desktop.processes.journal.size(), 1u);
    EXPECT_THAT(views.messages(), ElementsAre("1 Text(s) Copied"));
}

TEST_F(OCRTriggerTest, ShowsAnotherSelectionAfterOneThatCameToNothing)
{
    cancel();
    cancel();
    desktop.files.makeReadOnly("/tmp"); // there is nowhere to put the picture
    cancel();
    cancel();
    EXPECT_EQ(views.messages(), std::vector<std::string>(4, "No Text Found"));
}

TEST_F(OCRTriggerTest, LetsASecondCaptureStartWhileTheFirstIsRead)
{
    desktop.textRecognizer.hold();
    capture("First");
    capture("Second");
    EXPECT_EQ(desktop.processes.journal.size(), 2u);
    desktop.textRecognizer.answerHeld();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(desktop.pasteboard.text, "First\n\nSecond");
    batch.addToClipboard(screenshot);
    EXPECT_TRUE(aPasteEndsTheBatch());
}

// In a Wayland session the screen was covered with black, and stayed so.
TEST_F(OCRTriggerTest, SaysWhyAndStartsNothingWhereTheSessionHidesItsScreen)
{
    desktop.permissions.refuseScreen(Permission::State::unavailable);
    const std::string reason = desktop.permissions.screenRecording().reason;
    batch.addToClipboard(screenshot);
    const auto count = desktop.pasteboard.changeCount();
    EXPECT_FALSE(trigger->triggerOCR());
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(desktop.processes.journal, IsEmpty());
    EXPECT_EQ(desktop.pasteboard.changeCount(), count);
    EXPECT_EQ(views.messages().back(), reason);
    EXPECT_TRUE(aPasteEndsTheBatch());
}

TEST_F(OCRTriggerTest, SaysOnTheConsoleWhyNothingStartsAlsoToAUserWhoWantsNoToasts)
{
    desktop.permissions.refuseScreen(Permission::State::unavailable);
    desktop.defaults.standard().set("toastsDisabled", {true});
    EXPECT_FALSE(trigger->triggerOCR());
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(views.toasts, IsEmpty());
    EXPECT_THAT(
        desktop.console.lines,
        ElementsAre("Text extraction refused: " + desktop.permissions.screenRecording().reason));
}

TEST_F(OCRTriggerTest, StartsWhereTheUserOnlyHasToAgree)
{
    desktop.permissions.refuseScreen(Permission::State::needsUser);
    desktop.textRecognizer.willFindLines({"Hello"});
    EXPECT_TRUE(trigger->triggerOCR());
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(desktop.pasteboard.text, "Hello");
}

TEST_F(OCRTriggerTest, DoesNothingWhenTheTextComesAfterItsEnd)
{
    desktop.textRecognizer.willFindLines({"late"});
    trigger->triggerOCR();
    trigger.reset();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(desktop.pasteboard.changeCount(), 0);
}

} // namespace
} // namespace tallowbay
