#include "base/Paths.h"

#include <gmock/gmock.h>

namespace tallowbay {
namespace {

TEST(PathsTest, AFolderHoldsWhatLiesBelowItAndNoNeighbourOfALongerName)
{
    EXPECT_TRUE(isWithin("/a/b", "/a/b"));
    EXPECT_TRUE(isWithin("/a/b/c/d.png", "/a/b"));
    EXPECT_FALSE(isWithin("/a/bc/d.png", "/a/b"));
    EXPECT_FALSE(isWithin("/a", "/a/b"));
}

TEST(PathsTest, PeopleReadATildeForTheirHome)
{
    EXPECT_EQ(pathForPeople("/home/ann", "/home/ann"), "~");
    EXPECT_EQ(pathForPeople("/home/ann/Pictures/a.png", "/home/ann"), "~/Pictures/a.png");
    EXPECT_EQ(pathForPeople("/home/anna/a.png", "/home/ann"), "/home/anna/a.png");
    EXPECT_EQ(pathForPeople("/srv", "/home/ann"), "/srv");
}

} // namespace
} // namespace tallowbay
