#include "ocr/OCRCapture.h"

#include "platform/headless/Desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Arguments = std::vector<std::string>;

const std::filesystem::path folder = "/tmp/folder-1";
const std::filesystem::path capture = folder / "tallowbay_ocr_1767609072.png";

class OCRCaptureTest : public testing::Test {
protected:
    OCRCaptureTest()
    {
        desktop.processes.install(desktop.tools.screencapture, [this](const Arguments& arguments) {
            if (captured)
                desktop.files.create(arguments.at(1), *captured);
            return exitStatus;
        });
    }

    std::string pngOf(PixelSize size) { return *desktop.imageCodec.encodePng(Bitmap(size)); }

    void run()
    {
        OCRCapture::run(
            desktop.platform(),
            [this] {
                EXPECT_TRUE(desktop.dispatch.onMainQueue());
                ++endedSelections;
            },
            [this](const std::optional<std::string>& text) {
                EXPECT_TRUE(desktop.dispatch.onMainQueue());
                results.push_back(text);
                EXPECT_GE(endedSelections, results.size());
            });
    }

    // Runs a capture from beginning to end.
    std::optional<std::string> result()
    {
        run();
        desktop.dispatch.runUntilIdle();
        EXPECT_EQ(results.size(), 1u);
        EXPECT_EQ(endedSelections, 1u);
        return results.at(0);
    }

    headless::Desktop desktop;
    std::optional<std::string> captured = pngOf({3, 2}); // absent: the user pressed Esc
    int exitStatus = 0;
    std::size_t endedSelections = 0;
    std::vector<std::optional<std::string>> results;
};

TEST_F(OCRCaptureTest, ReturnsAtOnceAndCapturesForAUserWhoAsked)
{
    run();
    EXPECT_THAT(desktop.processes.journal, IsEmpty());
    ASSERT_EQ(desktop.dispatch.backgroundCount(), 1u);
    EXPECT_EQ(desktop.dispatch.backgroundQuality(0), QualityOfService::userInitiated);
}

TEST_F(OCRCaptureTest, RunsTheCaptureToolInteractivelyWithATemporaryFile)
{
    result();
    EXPECT_THAT(
        desktop.processes.journal,
        ElementsAre(headless::ScriptedProcesses::Call{
            "/usr/sbin/screencapture", {"-i", "/tmp/folder-1/tallowbay_ocr_1767609072.png"}}));
}

TEST_F(OCRCaptureTest, NamesTheFileAfterTheWholeSecond)
{
    desktop.clock.setWall(WallTime(1731600000999ms));
    result();
    EXPECT_EQ(
        desktop.processes.journal.at(0).arguments.at(1), folder / "tallowbay_ocr_1731600000.png");
}

TEST_F(OCRCaptureTest, CutsTheSecondTowardsZeroBeforeTheEpochToo)
{
    desktop.clock.setWall(WallTime(-1500ms));
    result();
    EXPECT_EQ(desktop.processes.journal.at(0).arguments.at(1), folder / "tallowbay_ocr_-1.png");
}

TEST_F(OCRCaptureTest, RecognisesTheCapturedPictureAccuratelyWithLanguageCorrection)
{
    captured = pngOf({7, 5});
    result();
    ASSERT_EQ(desktop.textRecognizer.journal.size(), 1u);
    EXPECT_EQ(desktop.textRecognizer.journal[0].image->size(), (PixelSize{7, 5}));
    const RecognitionRequest& request = desktop.textRecognizer.journal[0].request;
    EXPECT_EQ(request.recognitionLevel, RecognitionLevel::accurate);
    EXPECT_EQ(static_cast<int>(request.recognitionLevel), 0);
    EXPECT_TRUE(request.usesLanguageCorrection);
}

TEST_F(OCRCaptureTest, JoinsThreeLinesWithSingleLineFeeds)
{
    desktop.textRecognizer.willFindLines({"one", "two", "three"});
    EXPECT_EQ(result(), "one\ntwo\nthree");
}

TEST_F(OCRCaptureTest, KeepsTheOrderOfTheRecogniser)
{
    desktop.textRecognizer.willFindLines({"zebra", "ant", "zebra"});
    EXPECT_EQ(result(), "zebra\nant\nzebra");
}

TEST_F(OCRCaptureTest, TakesTheBestCandidateOfEachObservation)
{
    desktop.textRecognizer.willFind({{{{"best", 0.4}, {"second", 0.9}}}, {{{"only", 0.1}}}});
    EXPECT_EQ(result(), "best\nonly");
}

TEST_F(OCRCaptureTest, SkipsObservationsWithoutCandidates)
{
    desktop.textRecognizer.willFind({{}, {{{"a", 1}}}, {}, {{{"b", 1}}}, {}});
    EXPECT_EQ(result(), "a\nb");
}

TEST_F(OCRCaptureTest, KeepsAnEmptyLineThatWasRecognised)
{
    desktop.textRecognizer.willFindLines({"", "a", "", "b"});
    EXPECT_EQ(result(), "\na\n\nb");
}

TEST_F(OCRCaptureTest, FindsNoTextWithoutObservations)
{
    EXPECT_EQ(result(), std::nullopt);
}

TEST_F(OCRCaptureTest, FindsNoTextIfEveryObservationIsSkipped)
{
    desktop.textRecognizer.willFind({{}, {}});
    EXPECT_EQ(result(), std::nullopt);
}

TEST_F(OCRCaptureTest, FindsNoTextAndRecognisesNothingWhenTheUserCancels)
{
    captured = std::nullopt;
    exitStatus = 1;
    EXPECT_EQ(result(), std::nullopt);
    EXPECT_THAT(desktop.textRecognizer.journal, IsEmpty());
    EXPECT_FALSE(desktop.files.exists(folder));
}

TEST_F(OCRCaptureTest, FindsNoTextIfTheToolSucceedsWithoutAFile)
{
    captured = std::nullopt;
    EXPECT_EQ(result(), std::nullopt);
    EXPECT_THAT(desktop.textRecognizer.journal, IsEmpty());
}

TEST_F(OCRCaptureTest, RemovesTheFileOfAToolThatFails)
{
    exitStatus = 1;
    EXPECT_EQ(result(), std::nullopt);
    EXPECT_THAT(desktop.textRecognizer.journal, IsEmpty());
    EXPECT_FALSE(desktop.files.exists(folder));
}

TEST_F(OCRCaptureTest, FindsNoTextWithoutTheTool)
{
    desktop.tools.screencapture = "/nowhere/screencapture";
    EXPECT_EQ(result(), std::nullopt);
}

TEST_F(OCRCaptureTest, FindsNoTextInAFileThatIsNoPicture)
{
    captured = "no picture";
    EXPECT_EQ(result(), std::nullopt);
    EXPECT_THAT(desktop.textRecognizer.journal, IsEmpty());
    EXPECT_FALSE(desktop.files.exists(folder));
}

TEST_F(OCRCaptureTest, FindsNoTextIfTheRecogniserFails)
{
    desktop.textRecognizer.willFail("no language data");
    EXPECT_EQ(result(), std::nullopt);
    EXPECT_FALSE(desktop.files.exists(folder));
}

TEST_F(OCRCaptureTest, FindsNoTextIfTheRecogniserThrows)
{
    desktop.textRecognizer.willThrow();
    EXPECT_EQ(result(), std::nullopt);
    EXPECT_FALSE(desktop.files.exists(folder));
}

TEST_F(OCRCaptureTest, RemovesTheFileBeforeTheCompletionRuns)
{
    bool existed = true;
    OCRCapture::run(
        desktop.platform(), [] {}, [&](const auto&) { existed = desktop.files.exists(folder); });
    desktop.dispatch.runUntilIdle();
    EXPECT_FALSE(existed);
}

TEST_F(OCRCaptureTest, CapturesNothingWithoutAFolderOfItsOwn)
{
    desktop.files.makeReadOnly("/tmp");
    EXPECT_EQ(result(), std::nullopt);
    EXPECT_THAT(desktop.processes.journal, IsEmpty());
    EXPECT_THAT(
        desktop.console.lines,
        ElementsAre("Text extraction failed: no folder can be made for the capture"));
}

TEST_F(OCRCaptureTest, SaysNothingOfACaptureThatTheUserCancels)
{
    captured = std::nullopt;
    exitStatus = 1;
    result();
    EXPECT_THAT(desktop.console.lines, IsEmpty());
}

TEST_F(OCRCaptureTest, CompletesEvenIfTheFileCannotBeRemoved)
{
    desktop.textRecognizer.willFindLines({"text"});
    desktop.processes.install(desktop.tools.screencapture, [this](const Arguments& arguments) {
        desktop.files.create(arguments.at(1), *captured);
        desktop.files.makeReadOnly("/tmp");
        return 0;
    });
    EXPECT_EQ(result(), "text");
    EXPECT_TRUE(desktop.files.exists(capture));
}

TEST_F(OCRCaptureTest, KeepsTheFileUntilALateRecogniserAnswers)
{
    desktop.textRecognizer.hold();
    desktop.textRecognizer.willFindLines({"late"});
    run();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(results, IsEmpty());
    EXPECT_EQ(endedSelections, 1u);
    EXPECT_TRUE(desktop.files.exists(capture));

    desktop.textRecognizer.answerHeld();
    EXPECT_THAT(results, IsEmpty()); // not on the recogniser's thread
    desktop.dispatch.runMain();
    EXPECT_THAT(results, ElementsAre("late"));
    EXPECT_FALSE(desktop.files.exists(folder));
}

TEST_F(OCRCaptureTest, RunsTwoCapturesSideBySide)
{
    desktop.textRecognizer.willFindLines({"first"});
    desktop.textRecognizer.willFindLines({"second"});
    run();
    run();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(results, ElementsAre("first", "second"));
    const auto& calls = desktop.processes.journal;
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_NE(calls[0].arguments.at(1), calls[1].arguments.at(1)) << "within one second";
    EXPECT_EQ(desktop.files.list("/tmp")->size(), 0u);
}

} // namespace
} // namespace tallowbay
