#include "platform/tesseract/TesseractRecognizer.h"

#include "platform/contract/TextRecognizerContract.h"
#include "platform/headless/VirtualTime.h"
#include "platform/tesseract/TestText.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <thread>

namespace tallowbay::tesseract {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using Lines = std::vector<std::string>;

struct TesseractBackend {
    headless::VirtualClock clock;
    headless::VirtualDispatch dispatch{clock};
    TesseractRecognizer tesseract{dispatch};

    TextRecognizer& recognizer() { return tesseract; }
    Image pictureOf(const Lines& lines) { return TextDrawing::draw(lines); }
    Image emptyPicture() { return TextDrawing::draw({}); }
};

class TesseractRecognizerTest : public testing::Test {
protected:
    RecognitionResult resultOf(const Image& image)
    {
        std::vector<RecognitionResult> results;
        recognizer.recognize(image, {}, RecognitionReply([&](const RecognitionResult& result) {
                                 results.push_back(result);
                             }));
        EXPECT_EQ(results.size(), 1u);
        return results.at(0);
    }

    Lines linesOf(const Image& image)
    {
        Lines lines;
        const auto result = resultOf(image);
        for (const TextObservation& observation : std::get<TextObservations>(result))
            lines.push_back(observation.candidates.at(0).string);
        return lines;
    }

    headless::VirtualClock clock;
    headless::VirtualDispatch dispatch{clock};
    test::TemporaryFolder folder;
    bool hasData = true;
    TesseractRecognizer recognizer{dispatch, [this] {
                                       return hasData ? findLanguageData(languageDataFolders(), "C")
                                                      : findLanguageData({folder.path}, "C");
                                   }};
};

const Lines sentences{
    "Please bring the printed figures.", "Nobody had opened the window.",
    "Version 3.2 fixes a crash at 10:30."};

TEST_F(TesseractRecognizerTest, ReadsLightTextOnADarkGround)
{
    EXPECT_THAT(
        linesOf(TextDrawing::draw(sentences, {"DejaVu Sans", 12, 0xFFE0E0E0u, 0xFF1E1E1Eu})),
        ElementsAreArray(sentences));
}

TEST_F(TesseractRecognizerTest, ReadsFaintText)
{
    EXPECT_THAT(
        linesOf(TextDrawing::draw(sentences, {"DejaVu Sans", 13, 0xFF9A9A9Au, 0xFFFFFFFFu})),
        ElementsAreArray(sentences));
}

TEST_F(TesseractRecognizerTest, ReadsColouredTextAsBrightAsItsGround)
{
    EXPECT_THAT(
        linesOf(TextDrawing::draw(sentences, {"DejaVu Sans", 14, 0xFFD02020u, 0xFF407010u})),
        ElementsAreArray(sentences));
}

TEST_F(TesseractRecognizerTest, ReadsADarkHeadOverALightBody)
{
    QImage picture(500, 130, QImage::Format_RGB32);
    picture.fill(0xFFFFFFFFu);
    QPainter(&picture).fillRect(0, 0, 500, 36, QColor(0x2D2D2D));
    TextDrawing::drawInto(picture, {"Name of the station"}, {"DejaVu Sans", 13, 0xFFEEEEEEu, 0}, 6);
    TextDrawing::drawInto(picture, {"Harbour bridge", "Northern hills"}, {}, 50);
    EXPECT_THAT(
        linesOf(TextDrawing::bitmapOf(picture)),
        ElementsAre("Name of the station", "Harbour bridge", "Northern hills"));
}

TEST_F(TesseractRecognizerTest, KeepsTheIndentationOfCode)
{
    const Lines code{"int main(void)", "{", "    for (int i = 0; i < 9; ++i)", "        print(i);",
                     "    return 0;",  "}"};
    EXPECT_THAT(linesOf(TextDrawing::draw(code, {"DejaVu Sans Mono", 14})), ElementsAreArray(code));
}

TEST_F(TesseractRecognizerTest, ReadsUnderscoresInCode)
{
    const Lines code{
        "#define __packed __attribute__((__packed__))", "_Static_assert(sizeof(size_t) == 8);",
        "u8 _slot = __first - _last_;", "log_all(__FILE__, __LINE__, _max);"};
    for (const char* typeface : {"DejaVu Sans Mono", "Liberation Mono"})
        EXPECT_THAT(linesOf(TextDrawing::draw(code, {typeface, 13})), ElementsAreArray(code));
}

TEST_F(TesseractRecognizerTest, ReadsLinesOfAFewSigns)
{
    const Lines code{
        "struct Timer {",        "int count;", "};", "int parse(int argument)", "{", "}", "\"\"\"",
        "find_free_slot(first)", ";;"};
    for (const char* typeface : {"DejaVu Sans Mono", "Liberation Mono"})
        EXPECT_THAT(linesOf(TextDrawing::draw(code, {typeface, 13})), ElementsAreArray(code));
}

TEST_F(TesseractRecognizerTest, ReadsARulerAtItsLength)
{
    const Lines code{
        "int first; // ------------------------------------", "static int parse(char *argument);",
        "int first; // ------------------------------------"};
    for (const char* typeface : {"DejaVu Sans Mono", "Liberation Mono"})
        EXPECT_THAT(linesOf(TextDrawing::draw(code, {typeface, 13})), ElementsAreArray(code));
}

TEST_F(TesseractRecognizerTest, ReadsTheZerosOfADump)
{
    const Lines dump{
        "00000000: 7f45 4c46 0201 0100 0000 0000 0000 0000",
        "00000010: 0300 3e00 0100 0000 b062 0000 0000 0000",
        "00000020: 4000 0000 0000 0000 90c4 0400 0000 0000"};
    for (const char* typeface : {"DejaVu Sans Mono", "Liberation Mono"})
        EXPECT_THAT(linesOf(TextDrawing::draw(dump, {typeface, 13})), ElementsAreArray(dump));
}

TEST_F(TesseractRecognizerTest, InventsNoLineForAnEmptyOne)
{
    EXPECT_THAT(
        linesOf(TextDrawing::draw({"The first line", "", "", "the second line"})),
        ElementsAre("The first line", "the second line"));
}

TEST_F(TesseractRecognizerTest, ReadsLargeAndSmallText)
{
    for (const int pixels : {10, 11, 14, 18, 20}) {
        EXPECT_THAT(
            linesOf(TextDrawing::draw({"Window of the evening"}, {"DejaVu Sans", pixels})),
            ElementsAre("Window of the evening"))
            << pixels;
    }
}

TEST_F(TesseractRecognizerTest, TakesFramesAndRulesForNoText)
{
    QImage picture(400, 100, QImage::Format_RGB32);
    picture.fill(0xFFFFFFFFu);
    QPainter painter(&picture);
    painter.drawRect(4, 4, 390, 90);
    painter.drawLine(4, 50, 394, 50);
    painter.end();
    EXPECT_THAT(linesOf(TextDrawing::bitmapOf(picture)), IsEmpty());
}

TEST_F(TesseractRecognizerTest, StatesHowSureItIs)
{
    const auto result = resultOf(TextDrawing::draw({"Perfectly clear"}));
    const auto& candidate = std::get<TextObservations>(result).at(0).candidates.at(0);
    EXPECT_GT(candidate.confidence, 0.5);
    EXPECT_LE(candidate.confidence, 1);
}

TEST_F(TesseractRecognizerTest, RefusesAPictureTooLargeForItsMemory)
{
    const auto huge = std::make_shared<Bitmap>(PixelSize{8001, 5000});
    const auto result = resultOf(huge);
    ASSERT_TRUE(std::holds_alternative<RecognitionFailure>(result));
    EXPECT_THAT(std::get<RecognitionFailure>(result).reason, HasSubstr("too large"));
}

TEST_F(TesseractRecognizerTest, SurvivesOddShapesAndNoise)
{
    for (const PixelSize size :
         {PixelSize{1, 600}, PixelSize{600, 1}, PixelSize{3, 3}, PixelSize{2000, 7},
          PixelSize{120, 90}}) {
        auto noise = std::make_shared<Bitmap>(size);
        std::uint32_t state = 1;
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x)
                noise->row(y)[x] = 0xFF000000u | (state = state * 1664525u + 1013904223u) >> 8;
        }
        EXPECT_TRUE(std::holds_alternative<TextObservations>(resultOf(noise)));
    }
}

TEST_F(TesseractRecognizerTest, FailsWithAReasonWithoutLanguageData)
{
    hasData = false;
    const auto result = resultOf(TextDrawing::draw({"Text"}));
    ASSERT_TRUE(std::holds_alternative<RecognitionFailure>(result));
    EXPECT_THAT(std::get<RecognitionFailure>(result).reason, HasSubstr("language data"));
}

TEST_F(TesseractRecognizerTest, FailsWithAReasonIfTheLanguageDataIsDamaged)
{
    hasData = false;
    std::ofstream(folder.path / "eng.traineddata") << "no data";
    const auto result = resultOf(TextDrawing::draw({"Text"}));
    ASSERT_TRUE(std::holds_alternative<RecognitionFailure>(result));
    EXPECT_THAT(std::get<RecognitionFailure>(result).reason, HasSubstr("cannot use"));
}

TEST_F(TesseractRecognizerTest, FindsLanguageDataThatIsInstalledLater)
{
    hasData = false;
    resultOf(TextDrawing::draw({"Text"}));
    hasData = true;
    EXPECT_THAT(linesOf(TextDrawing::draw({"Text at last"})), ElementsAre("Text at last"));
}

TEST_F(TesseractRecognizerTest, KeepsItsEngineWarmForAMinuteAfterTheLastUse)
{
    EXPECT_EQ(recognizer.warmEngines(), 0u);
    linesOf(TextDrawing::draw({"Text"}));
    EXPECT_EQ(recognizer.warmEngines(), 1u);
    dispatch.advance(40s);
    linesOf(TextDrawing::draw({"Text"}));
    dispatch.advance(59'999ms);
    EXPECT_EQ(recognizer.warmEngines(), 1u);
    dispatch.advance(1ms);
    EXPECT_EQ(recognizer.warmEngines(), 0u);
    EXPECT_THAT(linesOf(TextDrawing::draw({"Text again"})), ElementsAre("Text again"));
}

TEST_F(TesseractRecognizerTest, MayGoBeforeItsEngineWouldHave)
{
    {
        TesseractRecognizer brief(dispatch);
        brief.recognize(TextDrawing::draw({"Text"}), {}, RecognitionReply([](const auto&) {}));
    }
    dispatch.advance(2min);
}

TEST_F(TesseractRecognizerTest, ReadsSeveralPicturesAtOnce)
{
    const Image pictures[]{
        TextDrawing::draw({"The first of them"}), TextDrawing::draw({"Another picture"}),
        TextDrawing::draw({"And a third"})};
    Lines lines[3];
    std::vector<std::thread> threads;
    for (std::size_t at = 0; at < 3; ++at) {
        threads.emplace_back([&, at] {
            recognizer.recognize(
                pictures[at], {}, RecognitionReply([&, at](const RecognitionResult& result) {
                    for (const auto& observation : std::get<TextObservations>(result))
                        lines[at].push_back(observation.candidates.at(0).string);
                }));
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_THAT(lines[0], ElementsAre("The first of them"));
    EXPECT_THAT(lines[1], ElementsAre("Another picture"));
    EXPECT_THAT(lines[2], ElementsAre("And a third"));
}

} // namespace
} // namespace tallowbay::tesseract

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Tesseract, TextRecognizerContract, tesseract::TesseractBackend);
} // namespace tallowbay::contract
