#include "EditDistance.h"

#include <gtest/gtest.h>

namespace tallowbay::bench {
namespace {

int distance(const std::string& one, const std::string& other)
{
    return editDistance(normalised(one), normalised(other));
}

TEST(EditDistanceTest, CountsWhatIsMissingTooMuchOrWrong)
{
    EXPECT_EQ(distance("kitten", "kitten"), 0);
    EXPECT_EQ(distance("kitten", "sitting"), 3);
    EXPECT_EQ(distance("", "abc"), 3);
    EXPECT_EQ(distance("abc", ""), 3);
}

TEST(EditDistanceTest, CountsCharactersAndNotBytes)
{
    EXPECT_EQ(distance("“é”", "\"e\""), 3);
}

TEST(EditDistanceTest, TakesAnyBlankSpaceForOneBlank)
{
    EXPECT_EQ(distance("a b\nc", "  a \t b  \n\n\n c\f\n"), 0);
}

TEST(EditDistanceTest, CountsALineBreakAsACharacter)
{
    EXPECT_EQ(distance("a b", "a\nb"), 1);
    EXPECT_EQ(distance("ab", "a\nb"), 1);
}

TEST(EditDistanceTest, ForgivesNothingElse)
{
    EXPECT_EQ(distance("Will's 0", "will’s O"), 3);
}

} // namespace
} // namespace tallowbay::bench
