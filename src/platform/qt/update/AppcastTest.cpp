#include "platform/qt/update/Appcast.h"

#include <gmock/gmock.h>

namespace tallowbay::qt {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

bool older(std::string_view one, std::string_view other)
{
    return std::is_lt(compareVersions(one, other)) && std::is_gt(compareVersions(other, one));
}

bool equal(std::string_view one, std::string_view other)
{
    return std::is_eq(compareVersions(one, other)) && std::is_eq(compareVersions(other, one));
}

TEST(VersionTest, ComparesNumbersAsNumbers)
{
    EXPECT_TRUE(older("1.9", "1.10"));
    EXPECT_TRUE(older("1.0.0", "1.0.1"));
    EXPECT_TRUE(older("9", "10"));
    EXPECT_TRUE(older("0.9.9", "1"));
    EXPECT_TRUE(older("99999999999999999999998", "99999999999999999999999"));
}

TEST(VersionTest, TakesMissingNumbersForZero)
{
    EXPECT_TRUE(equal("1", "1.0.0"));
    EXPECT_TRUE(equal("1.0", "1.00"));
    EXPECT_TRUE(older("1", "1.0.1"));
    EXPECT_TRUE(equal("", "0"));
}

TEST(VersionTest, PutsPreReleasesBeforeTheRelease)
{
    EXPECT_TRUE(older("2.0b3", "2.0"));
    EXPECT_TRUE(older("2.0-beta.2", "2.0-beta.11"));
    EXPECT_TRUE(older("2.0-alpha", "2.0-beta"));
    EXPECT_TRUE(older("1.9", "2.0b1"));
    EXPECT_TRUE(older("2.0rc1", "2.0.1"));
}

TEST(VersionTest, IgnoresBuildMetadataAndOtherSigns)
{
    EXPECT_TRUE(equal("1.2+build7", "1.2"));
    EXPECT_TRUE(equal("1_2", "1.2"));
    EXPECT_TRUE(equal(" 1.2 ", "1.2"));
}

QByteArray feed(const QByteArray& items)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
           "<rss version=\"2.0\""
           " xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
           "<channel><title>Tallowbay</title><link>https://example.org</link>"
        + items + "</channel></rss>";
}

std::vector<std::string> versions(const QByteArray& items)
{
    std::vector<std::string> result;
    const auto parsed = parseAppcast(feed(items));
    if (!parsed)
        return {"no feed"};
    for (const auto& item : *parsed)
        result.push_back(item.version);
    return result;
}

TEST(AppcastTest, ReadsVersionsFromElements)
{
    EXPECT_THAT(
        versions("<item><sparkle:version>120</sparkle:version>"
                 "<sparkle:shortVersionString> 1.2.0 </sparkle:shortVersionString></item>"
                 "<item><sparkle:version>1.1</sparkle:version></item>"),
        ElementsAre("1.2.0", "1.1"));
}

TEST(AppcastTest, ReadsVersionsFromAttributesOfTheEnclosure)
{
    EXPECT_THAT(
        versions("<item><enclosure url=\"https://example.org/a.zip\" sparkle:version=\"120\""
                 " sparkle:shortVersionString=\"1.2.0\"/></item>"
                 "<item><enclosure url=\"https://example.org/b.zip\""
                 " sparkle:version=\"1.1\"></enclosure></item>"),
        ElementsAre("1.2.0", "1.1"));
}

TEST(AppcastTest, LinksToTheReleasesPageElseToItsFile)
{
    const auto items = parseAppcast(
        feed("<item><link>https://example.org/notes</link><sparkle:version>1</sparkle:version>"
             "<enclosure url=\"https://example.org/a.zip\"/></item>"
             "<item><sparkle:version>1</sparkle:version>"
             "<enclosure url=\"https://example.org/b.zip\"/></item>"
             "<item><sparkle:version>1</sparkle:version></item>"));
    ASSERT_TRUE(items);
    ASSERT_THAT(*items, SizeIs(3));
    EXPECT_EQ((*items)[0].link, QUrl("https://example.org/notes"));
    EXPECT_EQ((*items)[1].link, QUrl("https://example.org/b.zip"));
    EXPECT_TRUE((*items)[2].link.isEmpty());
}

TEST(AppcastTest, LinksToTheWebOnly)
{
    const auto items = parseAppcast(
        feed("<item><sparkle:version>1</sparkle:version><link>file:///usr/bin/xterm</link>"
             "<enclosure url=\"javascript:alert(1)\"/></item>"));
    ASSERT_TRUE(items);
    EXPECT_TRUE(items->front().link.isEmpty());
}

TEST(AppcastTest, LeavesOutOtherChannelsAndOtherSystems)
{
    EXPECT_THAT(
        versions("<item><sparkle:version>3</sparkle:version>"
                 "<sparkle:channel>beta</sparkle:channel></item>"
                 "<item><enclosure sparkle:version=\"4\" sparkle:os=\"windows\"/></item>"
                 "<item><enclosure sparkle:version=\"5\" sparkle:os=\"linux\"/></item>"),
        ElementsAre("5"));
}

TEST(AppcastTest, DoesNotMindTheSystemVersionOfAnotherSystem)
{
    EXPECT_THAT(
        versions("<item><sparkle:version>3</sparkle:version>"
                 "<sparkle:minimumSystemVersion>99.0</sparkle:minimumSystemVersion></item>"),
        ElementsAre("3"));
}

TEST(AppcastTest, LeavesOutItemsWithoutAVersion)
{
    EXPECT_THAT(versions("<item><title>3.0</title></item><item/>"), IsEmpty());
}

TEST(AppcastTest, ReadsElementsInsideDescriptionsAsText)
{
    EXPECT_THAT(
        versions("<item><description><![CDATA[<item><sparkle:version>9</sparkle:version></item>]]>"
                 "</description><sparkle:version>2</sparkle:version></item>"),
        ElementsAre("2"));
}

TEST(AppcastTest, AcceptsAFeedWithoutItems)
{
    const auto items = parseAppcast(feed(""));
    ASSERT_TRUE(items);
    EXPECT_THAT(*items, IsEmpty());
}

TEST(AppcastTest, RefusesWhatIsNoFeed)
{
    EXPECT_FALSE(parseAppcast(""));
    EXPECT_FALSE(parseAppcast("Not Found"));
    EXPECT_FALSE(parseAppcast("<html><body>Log in</body></html>"));
    EXPECT_FALSE(parseAppcast("{\"version\": 2}"));
}

TEST(AppcastTest, RefusesADamagedFeed)
{
    const QByteArray whole = feed("<item><sparkle:version>2</sparkle:version></item>");
    EXPECT_FALSE(parseAppcast(whole.left(whole.size() - 10)));
    EXPECT_FALSE(parseAppcast(feed("<item><sparkle:version>2</item>")));
    EXPECT_FALSE(parseAppcast(feed("<item>&undefined;</item>")));
}

TEST(AppcastTest, RefusesEntitiesThatExplode)
{
    QByteArray bomb = "<!DOCTYPE rss [<!ENTITY a \"aaaaaaaaaaaaaaaaaaaa\">";
    for (char name = 'b'; name <= 'k'; ++name)
        bomb += QByteArray("<!ENTITY ") + name + " \""
            + QByteArray("&x;").replace('x', name - 1).repeated(20) + "\">";
    bomb += "]><rss><channel><item><title>&k;</title></item></channel></rss>";
    EXPECT_FALSE(parseAppcast(bomb));
}

TEST(AppcastTest, FindsTheNewestOfManyItems)
{
    std::vector<AppcastItem> items;
    for (int number = 0; number < 10'000; ++number)
        items.push_back({"1." + std::to_string(number * 7919 % 10'000), {}});
    ASSERT_TRUE(newestUpdate(items, "1.0"));
    EXPECT_EQ(newestUpdate(items, "1.0")->version, "1.9999");
}

TEST(AppcastTest, OffersOnlyWhatIsNewerThanOurs)
{
    const std::vector<AppcastItem> items{{"1.0.0", {}}, {"0.9", {}}};
    EXPECT_FALSE(newestUpdate(items, "1.0"));
    EXPECT_FALSE(newestUpdate(items, "1.1"));
    EXPECT_FALSE(newestUpdate({}, "1.0"));
    EXPECT_EQ(newestUpdate(items, "0.8")->version, "1.0.0");
}

TEST(AppcastTest, PrefersTheFirstOfEquals)
{
    const auto update = newestUpdate(
        {{"2.0", QUrl("https://example.org/1")}, {"2.0.0", QUrl("https://example.org/2")}}, "1");
    ASSERT_TRUE(update);
    EXPECT_EQ(update->link, QUrl("https://example.org/1"));
}

} // namespace
} // namespace tallowbay::qt
