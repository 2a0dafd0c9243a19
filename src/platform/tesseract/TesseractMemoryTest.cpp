#include "platform/headless/VirtualTime.h"
#include "platform/tesseract/TesseractRecognizer.h"
#include "platform/tesseract/TestText.h"

#include <gtest/gtest.h>

#include <malloc.h>

namespace tallowbay::tesseract {
namespace {

std::size_t bytesInUse()
{
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

TEST(TesseractMemoryTest, AMinuteAfterTheLastUseTheDictionariesAreGivenBackWithTheEngine)
{
    constexpr std::size_t someOfTheirBytes = 1'000'000;
    headless::VirtualClock clock;
    headless::VirtualDispatch dispatch{clock};
    TesseractRecognizer recognizer(dispatch);
    const Image picture = TextDrawing::draw({"Nobody had opened the window"});
    const std::size_t before = bytesInUse();
    recognizer.recognize(picture, {}, RecognitionReply([](const RecognitionResult&) {}));
    EXPECT_GT(bytesInUse(), before + someOfTheirBytes);
    dispatch.advance(std::chrono::minutes(1));
    EXPECT_LT(bytesInUse(), before + someOfTheirBytes);
}

} // namespace
} // namespace tallowbay::tesseract
