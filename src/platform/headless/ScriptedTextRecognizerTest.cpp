#include "platform/headless/ScriptedTextRecognizer.h"

#include "platform/contract/TextRecognizerContract.h"

namespace tallowbay::headless {
namespace {

struct ScriptedRecognizerBackend {
    ScriptedTextRecognizer scripted;

    TextRecognizer& recognizer() { return scripted; }
    Image pictureOf(const std::vector<std::string>& lines)
    {
        scripted.willFindLines(lines);
        return emptyPicture();
    }
    Image emptyPicture() { return std::make_shared<Bitmap>(PixelSize{200, 60}); }
};

class RecognitionReplyTest : public testing::Test {
protected:
    RecognitionReply makeReply()
    {
        return RecognitionReply([this](const RecognitionResult& one) { results.push_back(one); });
    }

    std::vector<RecognitionResult> results;
};

TEST_F(RecognitionReplyTest, AnswersOnlyTheFirstTime)
{
    {
        RecognitionReply reply = makeReply();
        reply.answer(observationsOf({"a"}));
        reply.answer(observationsOf({"b"}));
    }
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(std::get<TextObservations>(results[0]).at(0).candidates.at(0).string, "a");
}

TEST_F(RecognitionReplyTest, AnswersWithAFailureWhenItIsDropped)
{
    makeReply();
    ASSERT_EQ(results.size(), 1u);
    EXPECT_TRUE(std::holds_alternative<RecognitionFailure>(results[0]));
}

TEST_F(RecognitionReplyTest, AnswersOnceAfterItWasHandedOn)
{
    {
        RecognitionReply first = makeReply();
        const RecognitionReply second = std::move(first);
        EXPECT_TRUE(results.empty());
    }
    EXPECT_EQ(results.size(), 1u);
}

TEST_F(RecognitionReplyTest, AnswersWhenTheRecogniserThrows)
{
    ScriptedTextRecognizer recognizer;
    recognizer.willThrow();
    const Image image = std::make_shared<Bitmap>(PixelSize{2, 2});
    EXPECT_THROW(recognizer.recognize(image, {}, makeReply()), std::bad_alloc);
    EXPECT_EQ(results.size(), 1u);
}

} // namespace
} // namespace tallowbay::headless

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(
    Headless, TextRecognizerContract, headless::ScriptedRecognizerBackend);
} // namespace tallowbay::contract
