#include "capture/ScreenshotLocation.h"

#include "platform/headless/Desktop.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

class ScreenshotLocationTest : public testing::Test {
protected:
    void set(const std::string& key, DefaultsValue value)
    {
        desktop.defaults.open("com.apple.screencapture")->set(key, std::move(value));
    }

    std::string folderFor(const std::string& setting)
    {
        set("location", {setting});
        return location.systemScreenshotDirectory(); // as text: paths of other slashes are equal
    }

    headless::Desktop desktop;
    ScreenshotLocation location{desktop.defaults, desktop.files, desktop.settings};
};

TEST_F(ScreenshotLocationTest, IsTheDesktopFolderByDefault)
{
    EXPECT_EQ(location.systemScreenshotDirectory(), "/home/u/Desktop");
}

TEST_F(ScreenshotLocationTest, IsTheFolderOfThePreferences)
{
    set("location", {"/media/shots"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/media/shots");
}

TEST_F(ScreenshotLocationTest, ExpandsALeadingTilde)
{
    set("location", {"~/Pictures/Shots"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/home/u/Pictures/Shots");
    set("location", {"~"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/home/u");
    set("location", {"/a/~/b"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/a/~/b");
}

TEST_F(ScreenshotLocationTest, TakesARelativeLocationFromTheHomeFolder)
{
    set("location", {"Pictures/Shots"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/home/u/Pictures/Shots");
}

TEST_F(ScreenshotLocationTest, TakesAnEmptyOrMistypedLocationForNone)
{
    set("location", {""});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/home/u/Desktop");
    set("location", {std::int64_t{7}});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/home/u/Desktop");
}

TEST_F(ScreenshotLocationTest, TreatsATrailingSlashAsTheSameFolder)
{
    set("location", {"/media/shots/"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/media/shots");
    set("location", {"/"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/");
}

TEST_F(ScreenshotLocationTest, MindsNoFurtherSlashAfterTheTilde)
{
    // The bug: "~//Shots" was the folder /Shots, since a path with a slash in front replaces what
    // it is joined to.
    EXPECT_EQ(folderFor("~//Shots"), "/home/u/Shots");
    EXPECT_EQ(folderFor("~///"), "/home/u");
    EXPECT_EQ(folderFor("~v//Shots"), "/home/v/Shots");
}

TEST_F(ScreenshotLocationTest, IsOneFolderHoweverItIsWritten)
{
    EXPECT_EQ(folderFor("/media//shots"), "/media/shots");
    EXPECT_EQ(folderFor("//media/./shots//"), "/media/shots");
    EXPECT_EQ(folderFor("~/./Shots/."), "/home/u/Shots");
    EXPECT_EQ(folderFor("."), "/home/u");
    EXPECT_EQ(folderFor("//"), "/");
    EXPECT_EQ(folderFor("/media/link/../shots"), "/media/link/../shots");
    desktop.settings.screenshotFolder = [] { return "/media//own/"; };
    EXPECT_EQ(folderFor(""), "/media/own");
}

TEST_F(ScreenshotLocationTest, ExpandsTheHomeOfAnotherUser)
{
    // The bug: "~v/Shots" was a folder of the name "~v" in the user's own home.
    EXPECT_EQ(folderFor("~v/Shots"), "/home/v/Shots");
    EXPECT_EQ(folderFor("~v"), "/home/v");
    EXPECT_EQ(folderFor("~v/"), "/home/v");
    EXPECT_EQ(folderFor("/a/~v/b"), "/a/~v/b");
    EXPECT_EQ(folderFor("./~v/b"), "/home/u/~v/b");
}

TEST_F(ScreenshotLocationTest, TakesTheHomeOfAnUnknownUserForNoLocation)
{
    EXPECT_EQ(folderFor("~nobody/Shots"), "/home/u/Desktop");
    EXPECT_EQ(folderFor("~ /Shots"), "/home/u/Desktop");
    desktop.settings.screenshotFolder = [] { return "/home/u/Pictures"; };
    EXPECT_EQ(folderFor("~nobody"), "/home/u/Pictures");
}

TEST_F(ScreenshotLocationTest, AsksForTheHomeOfAUserOnce)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(folderFor("~v/Shots"), "/home/v/Shots");
        EXPECT_EQ(folderFor("~v/Other"), "/home/v/Other");
    }
    EXPECT_EQ(desktop.files.homesAskedFor, 1);
    EXPECT_EQ(folderFor("~nobody"), "/home/u/Desktop");
    EXPECT_EQ(folderFor("~nobody"), "/home/u/Desktop");
    EXPECT_EQ(desktop.files.homesAskedFor, 2);
    EXPECT_EQ(folderFor("~v"), "/home/v");
}

// The bug: a user whom the directory service did not know yet was unknown until the next start.
TEST_F(ScreenshotLocationTest, FindsAUserWhoIsKnownOnlyLater)
{
    EXPECT_EQ(folderFor("~w/Shots"), "/home/u/Desktop");
    desktop.files.homes["w"] = "/home/w";
    for (int question = 0; question < 100; ++question)
        folderFor("~w/Shots");
    EXPECT_EQ(folderFor("~w/Shots"), "/home/w/Shots");
    EXPECT_EQ(desktop.files.homesAskedFor, 2);
}

TEST_F(ScreenshotLocationTest, AsksTheDesktopWhereThePreferencesNameNoFolder)
{
    desktop.settings.screenshotFolder = [] { return "/home/u/Pictures/Screenshots"; };
    EXPECT_EQ(location.systemScreenshotDirectory(), "/home/u/Pictures/Screenshots");
    set("location", {"/media/shots"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/media/shots");
}

TEST_F(ScreenshotLocationTest, LooksInAllPlacesOfTheToolsAsLongAsNoFolderIsChosen)
{
    const ScreenshotPlace own{"/home/u/Desktop", true, "the desktop's own"};
    EXPECT_EQ(location.places(), std::vector{own});
    const std::vector<ScreenshotPlace> places{
        {"/home/u/Pictures", false, "for tests"}, {"/media/shots", true, "for tests, too"}};
    desktop.settings.screenshotPlaces = [&] { return places; };
    EXPECT_EQ(location.places(), places);
}

TEST_F(ScreenshotLocationTest, LooksInAChosenFolderAlone)
{
    desktop.settings.screenshotPlaces = [] {
        return std::vector<ScreenshotPlace>{{"/home/u/Pictures", false, "for tests"}};
    };
    set("location", {"~/Shots/"});
    const ScreenshotPlace chosen{"/home/u/Shots", true, "chosen in the screenshot preferences"};
    EXPECT_EQ(location.places(), std::vector{chosen});
}

TEST_F(ScreenshotLocationTest, SeesAChangeAtTheNextRead)
{
    set("location", {"/one"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/one");
    set("location", {"/two"});
    EXPECT_EQ(location.systemScreenshotDirectory(), "/two");
}

TEST_F(ScreenshotLocationTest, KnowsTheClipboardTargetInAnyCase)
{
    EXPECT_FALSE(location.targetIsClipboard());
    for (const char* target : {"clipboard", "Clipboard", "CLIPBOARD"}) {
        set("target", {target});
        EXPECT_TRUE(location.targetIsClipboard());
    }
    set("target", {"file"});
    EXPECT_FALSE(location.targetIsClipboard());
}

} // namespace
} // namespace tallowbay
