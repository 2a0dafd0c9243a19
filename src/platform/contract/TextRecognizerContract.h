#pragma once

#include "platform/TextRecognizer.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// All text recognisers keep their header's promises. A backend offers:
//   TextRecognizer& recognizer();
//   Image pictureOf(const std::vector<std::string>& lines); // of which the next call reads these
//   Image emptyPicture();
template <typename Backend> class TextRecognizerContract : public testing::Test {
protected:
    // The results of one recognition, once the call has returned and its reply has been used.
    std::vector<RecognitionResult> resultsOf(const Image& image)
    {
        std::vector<RecognitionResult> results;
        recognizer.recognize(image, {}, RecognitionReply([&results](const RecognitionResult& one) {
                                 results.push_back(one);
                             }));
        return results;
    }

    static std::vector<std::string> lines(const std::vector<RecognitionResult>& results)
    {
        std::vector<std::string> best;
        if (const auto* found = std::get_if<TextObservations>(&results.at(0))) {
            for (const TextObservation& observation : *found)
                best.push_back(observation.candidates.at(0).string);
        }
        return best;
    }

    Backend backend;
    TextRecognizer& recognizer = backend.recognizer();
};

TYPED_TEST_SUITE_P(TextRecognizerContract);

TYPED_TEST_P(TextRecognizerContract, ReadsLinesFromTopToBottom)
{
    const std::vector<std::string> lines{
        "The quick brown fox", "jumps over the lazy", "dog and runs away"};
    const auto results = this->resultsOf(this->backend.pictureOf(lines));
    EXPECT_EQ(results.size(), 1u);
    EXPECT_EQ(this->lines(results), lines);
}

TYPED_TEST_P(TextRecognizerContract, FindsNothingWhereNothingIs)
{
    const auto results = this->resultsOf(this->backend.emptyPicture());
    ASSERT_EQ(results.size(), 1u);
    EXPECT_TRUE(std::holds_alternative<TextObservations>(results[0]));
    EXPECT_TRUE(this->lines(results).empty());
}

TYPED_TEST_P(TextRecognizerContract, AnswersOnceForAPictureOfOnePixel)
{
    const auto results = this->resultsOf(std::make_shared<Bitmap>(PixelSize{1, 1}));
    ASSERT_EQ(results.size(), 1u);
    EXPECT_TRUE(this->lines(results).empty());
}

TYPED_TEST_P(TextRecognizerContract, FailsWithAReasonWithoutAPicture)
{
    const auto results = this->resultsOf(nullptr);
    ASSERT_EQ(results.size(), 1u);
    const auto* failure = std::get_if<RecognitionFailure>(&results[0]);
    ASSERT_TRUE(failure);
    EXPECT_FALSE(failure->reason.empty());
}

TYPED_TEST_P(TextRecognizerContract, ReadsTheSameAgain)
{
    const std::vector<std::string> lines{"Second time around"};
    EXPECT_EQ(this->lines(this->resultsOf(this->backend.pictureOf(lines))), lines);
    EXPECT_EQ(this->lines(this->resultsOf(this->backend.pictureOf(lines))), lines);
}

REGISTER_TYPED_TEST_SUITE_P(
    TextRecognizerContract, ReadsLinesFromTopToBottom, FindsNothingWhereNothingIs,
    AnswersOnceForAPictureOfOnePixel, FailsWithAReasonWithoutAPicture, ReadsTheSameAgain);

} // namespace tallowbay::contract
