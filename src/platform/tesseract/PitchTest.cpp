#include "platform/tesseract/Pitch.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tallowbay::tesseract {
namespace {

std::vector<double> grid(double pitch, int letters, double left = 20)
{
    std::vector<double> centres;
    for (int at = 0; at < letters; ++at)
        centres.push_back(left + pitch * at);
    return centres;
}

TEST(PitchTest, IsTheWidthOfTheCharacters)
{
    EXPECT_NEAR(pitchOf({grid(7, 30)}, 6), 7, 0.1);
}

// Of figures and capitals alone, or where most of the heights mislead.
TEST(PitchTest, IsFoundWhereTheSmallLetterIsMisjudged)
{
    EXPECT_NEAR(pitchOf({grid(9, 30)}, 12), 9, 0.1);
    EXPECT_NEAR(pitchOf({grid(8, 30)}, 5), 8, 0.1);
}

TEST(PitchTest, IsFoundWhereLettersAreOffTheMiddleOfTheirCells)
{
    auto centres = grid(6, 60);
    for (std::size_t at = 0; at < centres.size(); ++at)
        centres[at] += static_cast<double>(at % 3) - 1;
    EXPECT_NEAR(pitchOf({centres}, 5.5), 6, 0.1);
}

// A few letters fit some grid by chance.
TEST(PitchTest, IsNoneForShortWordsOfDifferentWidths)
{
    Stretches words;
    for (int word = 0; word < 30; ++word) {
        words.emplace_back();
        double x = 11 * word;
        for (int letter = 0; letter < 3; ++letter)
            words.back().push_back(x += 4 + std::fmod(7.31 * (3 * word + letter), 5));
    }
    EXPECT_EQ(pitchOf(words, 6), 0);
}

} // namespace
} // namespace tallowbay::tesseract
