#include "platform/posix/preferences/SettingsText.h"

#include <gtest/gtest.h>

namespace tallowbay::posix {

namespace {

using Folder = std::optional<std::filesystem::path>;

TEST(KeyFileValueTest, FindsAKeyInItsGroup)
{
    constexpr auto text = "top=0\n[One]\nkey=1\n[Two]\r\n key = two words \n# key=3\n[One]\nlast=4";
    EXPECT_EQ(keyFileValue(text, "", "top"), "0");
    EXPECT_EQ(keyFileValue(text, "One", "key"), "1");
    EXPECT_EQ(keyFileValue(text, "Two", "key"), "two words");
    EXPECT_EQ(keyFileValue(text, "One", "last"), "4");
    EXPECT_EQ(keyFileValue(text, "", "key"), std::nullopt);
    EXPECT_EQ(keyFileValue(text, "Three", "key"), std::nullopt);
    EXPECT_EQ(keyFileValue("", "", "key"), std::nullopt);
}

TEST(KeyFileValueTest, LetsTheLastOneCount)
{
    EXPECT_EQ(keyFileValue("key=1\nkey=2\n", "", "key"), "2");
}

TEST(KeyFileValueTest, PassesOverMarksAfterAKey)
{
    EXPECT_EQ(keyFileValue("key[$e]=$HOME/x", "", "key"), "$HOME/x");
}

TEST(KeyFileValueTest, KeepsAnEqualsSignInTheValue)
{
    EXPECT_EQ(keyFileValue("key=a=b", "", "key"), "a=b");
    EXPECT_EQ(keyFileValue("key=", "", "key"), "");
}

TEST(FolderFromTextTest, UnderstandsEveryWayToWriteAFolder)
{
    const std::vector<std::pair<std::string, Folder>> rows{
        {"/srv/shots", "/srv/shots"},
        {"file:///srv/my%20shots", "/srv/my shots"},
        {"file:/srv/shots", "/srv/shots"},
        {"file:///srv/%C3%A9", "/srv/é"},
        {"file:$HOME/Bilder", "/home/u/Bilder"},
        {"file://$HOME/Bilder", "/home/u/Bilder"},
        {"$HOME/Pictures", "/home/u/Pictures"},
        {"~/Pictures", "/home/u/Pictures"},
        {"~", "/home/u"},
        {"", std::nullopt},
        {"Pictures", std::nullopt},
        {"~other/Pictures", std::nullopt},
        {"file:///bad%2", std::nullopt},
        {"https://example.com/x", std::nullopt},
        {"smb://server/share", std::nullopt}};
    for (const auto& [text, folder] : rows)
        EXPECT_EQ(folderFromText(text, "/home/u"), folder) << text;
}

TEST(PicturesFolderTest, ReadsTheFoldersOfTheUser)
{
    const std::vector<std::pair<std::string, Folder>> rows{
        {"# comment\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\nXDG_PICTURES_DIR=\"$HOME/Bilder\"\n",
         "/home/u/Bilder"},
        {"XDG_PICTURES_DIR=\"/srv/a \\\"b\\\"\"", "/srv/a \"b\""},
        {"XDG_PICTURES_DIR=\"$HOME/\"", std::nullopt},
        {"XDG_PICTURES_DIR=\"$HOME\"", std::nullopt},
        {"XDG_PICTURES_DIR=\"relative\"", std::nullopt},
        {"", std::nullopt}};
    for (const auto& [text, folder] : rows)
        EXPECT_EQ(userFolder(text, "XDG_PICTURES_DIR", "/home/u"), folder) << text;
}

TEST(UnquotedSettingTest, TakesTheQuotesAndEscapesAway)
{
    const std::vector<std::pair<std::string, std::optional<std::string>>> rows{
        {"'file:///home/u/Shots'\n", "file:///home/u/Shots"},
        {"''\n", ""},
        {"\"it's\"\n", "it's"},
        {R"('a\'b\\c\td')", "a'b\\c\td"},
        {R"('\u00e9\u20ac\U0001f4f7')", "é€📷"},
        {R"('\u00')", "u00"},
        {R"('end\')", "end\\"},
        {"", std::nullopt},
        {"'", std::nullopt},
        {"true", std::nullopt}};
    for (const auto& [printed, text] : rows)
        EXPECT_EQ(unquotedSetting(printed), text) << printed;
}

} // namespace

} // namespace tallowbay::posix
