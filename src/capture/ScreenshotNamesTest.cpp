#include "capture/ScreenshotNames.h"

#include "platform/headless/Desktop.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using Lines = std::vector<std::string>;

class ScreenshotNamesTest : public testing::Test {
protected:
    void setPatterns(const std::string& text)
    {
        desktop.defaults.standard().set("screenshotNamePatterns", {text});
        names.refresh();
    }

    headless::Desktop desktop;
    ScreenshotNames names{{"shot_[0-9]+", "(broken"}, desktop.defaults.standard(), desktop.console};
};

TEST_F(ScreenshotNamesTest, AreTheSystemsOwnAndThoseOfTheTools)
{
    EXPECT_TRUE(names.match("/home/u/Screenshot 1.png"));
    EXPECT_TRUE(names.match("/home/u/shot_12.png"));
    EXPECT_FALSE(names.match("/home/u/shot_12b.png")) << "the whole name counts";
    EXPECT_FALSE(names.match("/home/u/my shot_12.png"));
    EXPECT_TRUE(desktop.console.lines.empty());
}

TEST_F(ScreenshotNamesTest, AreThoseOfTheUserToo)
{
    EXPECT_FALSE(names.match("/home/u/maim-1.png"));
    setPatterns("maim-*, region ??.png,,");
    EXPECT_TRUE(names.match("/home/u/maim-1.png"));
    EXPECT_TRUE(names.match("/home/u/region 12.png"));
    EXPECT_FALSE(names.match("/home/u/region 12.jpg"));
    EXPECT_FALSE(names.match("/home/u/my maim-1.png"));
    EXPECT_TRUE(names.match("/home/u/Screenshot 1.png"));
    desktop.defaults.standard().remove("screenshotNamePatterns");
    names.refresh();
    EXPECT_FALSE(names.match("/home/u/maim-1.png"));
    EXPECT_TRUE(desktop.console.lines.empty());
}

TEST_F(ScreenshotNamesTest, SayOnceWhichPatternsMakeNoSense)
{
    setPatterns("a/*,maim-*,[0-9");
    names.refresh();
    const Lines problems{
        "screenshotNamePatterns: \"a/*\" names a folder; only the file's name is compared, and is "
        "not used",
        "screenshotNamePatterns: \"[0-9\" has a \"[\" without its \"]\", and is not used"};
    EXPECT_EQ(desktop.console.lines, problems);
    EXPECT_EQ(names.problems(), problems);
    EXPECT_TRUE(names.match("/home/u/maim-1.png")) << "the others count";
    setPatterns("maim-*");
    EXPECT_TRUE(names.problems().empty());
}

TEST_F(ScreenshotNamesTest, TakeNothingButATextForPatterns)
{
    desktop.defaults.standard().set("screenshotNamePatterns", {true});
    names.refresh();
    names.refresh();
    EXPECT_EQ(desktop.console.lines, Lines{"screenshotNamePatterns: is no text, and is not used"});
}

bool matches(const std::string& pattern, const std::string& name)
{
    const auto parsed = NamePattern::parse(pattern);
    EXPECT_TRUE(parsed.first) << pattern << " " << parsed.second;
    return parsed.first && parsed.first->matches(name);
}

TEST(NamePatternTest, StandsForNamesAsInAShell)
{
    EXPECT_TRUE(matches("*", ""));
    EXPECT_TRUE(matches("a*b*c", "a-b-b-c"));
    EXPECT_FALSE(matches("a*b*c", "a-b-b"));
    EXPECT_TRUE(matches("?", "é"));
    EXPECT_FALSE(matches("?", "ab"));
    EXPECT_FALSE(matches("?", ""));
    EXPECT_TRUE(matches("[a-c]x", "bx"));
    EXPECT_FALSE(matches("[!a-c]x", "bx"));
    EXPECT_TRUE(matches("[!a-c]x", "dx"));
    EXPECT_TRUE(matches("[]-]", "]"));
    EXPECT_TRUE(matches("[]-]", "-"));
    EXPECT_TRUE(matches("*[0-9]", "a*9"));
    EXPECT_TRUE(matches("**.png", ".png"));
    EXPECT_FALSE(matches("A", "a"));
}

TEST(NamePatternTest, TakesNoTimeHoweverManyStars)
{
    std::string stars;
    for (int i = 0; i < 127; ++i)
        stars += "*a";
    EXPECT_FALSE(matches(stars + "b", std::string(255, 'a')));
}

TEST(NamePatternTest, RefusesWhatIsNoPattern)
{
    for (const std::string text : {"", "a/b", "[", "[]", "[!", "[!]", "a[b]c[d"})
        EXPECT_FALSE(NamePattern::parse(text).first) << text;
    EXPECT_FALSE(NamePattern::parse(std::string(256, '*')).first);
}

TEST(ScreenshotName, BeginsWithOneOfTheSystemsPrefixes)
{
    EXPECT_TRUE(hasScreenshotName("Screenshot 2024-05-01 at 14.03.27.png"));
    EXPECT_TRUE(hasScreenshotName("Screen Shot 2014-05-01 at 14.03.27.png"));
    EXPECT_FALSE(hasScreenshotName("screenshot 2024-05-01 at 14.03.27.png"));
    EXPECT_FALSE(hasScreenshotName("Screenshot_20240501.png"));
    EXPECT_FALSE(hasScreenshotName("My Screenshot 1.png"));
    EXPECT_FALSE(hasScreenshotName("Screenshot.png"));
}

TEST(ScreenshotExtension, IsPngJpgOrJpegInAnyCase)
{
    for (const char* name : {"a.png", "a.PNG", "a.jpg", "a.Jpeg", "a.JPEG"})
        EXPECT_TRUE(hasScreenshotExtension(name)) << name;
    for (const char* name : {"a.heic", "a.tiff", "a.mov", "a", "png", ".png"})
        EXPECT_FALSE(hasScreenshotExtension(name)) << name;
}

} // namespace
} // namespace tallowbay
