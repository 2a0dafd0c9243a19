#pragma once

#include "platform/TextMeasurer.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// Every text measurer keeps its header's promises. A backend offers:
//   const TextMeasurer& measurer();
template <typename Backend> class TextMeasurerContract : public testing::Test {
protected:
    Size size(const std::string& text, double points = 16)
    {
        return backend.measurer().measure(text, {points, FontWeight::semibold});
    }

    Backend backend;
};

TYPED_TEST_SUITE_P(TextMeasurerContract);

TYPED_TEST_P(TextMeasurerContract, GrowsInProportionToTheFont)
{
    const Size one = this->size("a Text, \"1\" line\nand ÄÖ", 10);
    for (const double factor : {0.13, 0.75, 1.7, 2.0, 33.3}) {
        const Size other = this->size("a Text, \"1\" line\nand ÄÖ", 10 * factor);
        EXPECT_NEAR(other.width, one.width * factor, 1e-9 * other.width);
        EXPECT_NEAR(other.height, one.height * factor, 1e-9 * other.height);
    }
}

TYPED_TEST_P(TextMeasurerContract, GivesEveryLineTheSameHeight)
{
    const double line = this->size("x").height;
    EXPECT_GE(line, 16);
    for (const char* text : {"", " ", "gÄj", "a much longer line"})
        EXPECT_DOUBLE_EQ(this->size(text).height, line) << text;
    for (const char* text : {"a\nb", "\nb", "a\n", "\n"})
        EXPECT_DOUBLE_EQ(this->size(text).height, 2 * line) << text;
    EXPECT_DOUBLE_EQ(this->size("a\n\nc").height, 3 * line);
}

TYPED_TEST_P(TextMeasurerContract, IsAsWideAsTheLongestLine)
{
    const double longest = this->size("the longest line").width;
    EXPECT_GT(longest, this->size("a line").width);
    for (const char* text :
         {"the longest line\na line", "a line\nthe longest line", "a line\nthe longest line\n"})
        EXPECT_DOUBLE_EQ(this->size(text).width, longest) << text;
}

TYPED_TEST_P(TextMeasurerContract, GivesAnEmptyTextNoWidth)
{
    EXPECT_EQ(this->size("").width, 0);
    EXPECT_EQ(this->size("\n").width, 0);
}

TYPED_TEST_P(TextMeasurerContract, CountsBlanksAtEitherEnd)
{
    const double bare = this->size("text").width;
    EXPECT_GT(this->size("text ").width, bare);
    EXPECT_GT(this->size(" text ").width, this->size("text ").width);
}

REGISTER_TYPED_TEST_SUITE_P(
    TextMeasurerContract, GrowsInProportionToTheFont, GivesEveryLineTheSameHeight,
    IsAsWideAsTheLongestLine, GivesAnEmptyTextNoWidth, CountsBlanksAtEitherEnd);

} // namespace tallowbay::contract
