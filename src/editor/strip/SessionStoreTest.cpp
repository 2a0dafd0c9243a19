#include "editor/strip/SessionStore.h"

#include "platform/headless/Desktop.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

namespace tallowbay {
namespace {

using Item = SessionStore::Item;
using Items = std::vector<Item>;
using nlohmann::json;
using testing::ElementsAre;
using testing::Optional;
using testing::StartsWith;

const std::filesystem::path sessionFile = "/home/u/Downloads/Tallowbay/session.json";

class SessionStoreTest : public testing::Test {
protected:
    void store(const std::string& text)
    {
        desktop.files.createFolders(sessionFile.parent_path());
        desktop.files.writeAtomically(sessionFile, text);
    }
    std::optional<Items> loaded() { return SessionStore::load(desktop.files); }
    std::optional<Items> loadedFrom(const std::string& text)
    {
        store(text);
        return loaded();
    }
    void save(const Items& items) { SessionStore::save(desktop.files, desktop.console, items); }
    std::string saved() { return desktop.files.read(sessionFile).value_or("no file"); }

    headless::Desktop desktop;
};

TEST_F(SessionStoreTest, WritesImagesAndDividersInTheirOrder)
{
    save({{"/o/D.png", true}, {}, {"/o/A.png", false}});

    EXPECT_EQ(json::parse(saved()), json::parse(R"({"items": [
        {"type": "image", "url": "/o/D.png", "checked": true},
        {"type": "divider"},
        {"type": "image", "url": "/o/A.png", "checked": false}]})"));
}

TEST_F(SessionStoreTest, WritesAnEmptyStripAsAnEmptyList)
{
    save({});
    EXPECT_EQ(json::parse(saved()), json::parse(R"({"items": []})"));
}

TEST_F(SessionStoreTest, ReadsWhatItWrote)
{
    const Items items{{"/o/D \"1\"\n.png", true}, {}, {"/o/\xc3\xa4.png", false}, {}};
    save(items);
    EXPECT_THAT(loaded(), Optional(items));
}

TEST_F(SessionStoreTest, KeepsANameThatIsNoText)
{
    const Items items{{"/o/\xff\xfe.png", true}};
    save(items);
    EXPECT_THAT(loaded(), Optional(items));
    EXPECT_THAT(json::parse(saved())["items"][0]["url"].get<std::string>(), StartsWith("/o/"));
}

TEST_F(SessionStoreTest, MakesTheFolder)
{
    save({});
    EXPECT_TRUE(desktop.files.isDirectory(sessionFile.parent_path()));
}

TEST_F(SessionStoreTest, ReadsNothingWithoutAFile)
{
    EXPECT_EQ(loaded(), std::nullopt);
}

TEST_F(SessionStoreTest, TakesAMissingCheckedForTrue)
{
    EXPECT_THAT(
        loadedFrom(R"({"items": [{"type": "image", "url": "/a"}]})"),
        Optional(ElementsAre(Item{"/a", true})));
}

TEST_F(SessionStoreTest, TakesAnyOtherTypeForAScreenshot)
{
    EXPECT_THAT(
        loadedFrom(R"({"items": [{"type": "film", "url": "/a", "checked": false}]})"),
        Optional(ElementsAre(Item{"/a", false})));
}

TEST_F(SessionStoreTest, IgnoresOtherKeys)
{
    EXPECT_THAT(
        loadedFrom(R"({"version": 7, "items": [{"type": "divider", "url": 3, "x": [[[[1]]]]}]})"),
        Optional(ElementsAre(Item{})));
}

TEST_F(SessionStoreTest, ReadsNothingWhereOneRuleIsBroken)
{
    for (const char* text : {
             "",
             "null",
             "[]",
             "{}",
             R"({"items": {}})",
             R"({"items": null})",
             R"({"items": [)",
             R"({"items": [1]})",
             R"({"items": [{}]})",
             R"({"items": [{"url": "/a"}]})",
             R"({"items": [{"type": 1, "url": "/a"}]})",
             R"({"items": [{"type": "image"}]})",
             R"({"items": [{"type": "image", "url": 1}]})",
             R"({"items": [{"type": "image", "url": "/a", "checked": 1}]})",
             R"({"items": [{"type": "image", "url": "/a", "checked": null}]})",
             R"({"items": [{"type": "divider"}, {"type": "image"}]})",
             "\xff\xfe",
         })
        EXPECT_EQ(loadedFrom(text), std::nullopt) << text;
}

TEST_F(SessionStoreTest, LeavesAFileThatItCannotReadAsItIs)
{
    ASSERT_EQ(loadedFrom("half a"), std::nullopt);
    EXPECT_EQ(saved(), "half a");
}

TEST_F(SessionStoreTest, PutsUpWithDeepNesting)
{
    EXPECT_EQ(loadedFrom(std::string(1'000'000, '[')), std::nullopt);
    EXPECT_EQ(loadedFrom(std::string(900'000, '[') + std::string(900'000, ']')), std::nullopt);
}

TEST_F(SessionStoreTest, DoesNotReadAHugeFile)
{
    const std::string session = R"({"items": []})";
    EXPECT_TRUE(loadedFrom(session + std::string(SessionStore::largestFile - session.size(), ' ')));
    EXPECT_FALSE(
        loadedFrom(session + std::string(SessionStore::largestFile + 1 - session.size(), ' ')));
}

// All of it was written, and none of it was ever read again.
TEST_F(SessionStoreTest, LeavesOutTheOldestOfWhatWouldBeTooLargeToRead)
{
    const auto batch = [](const std::string& name, int count) {
        Items items;
        for (int i = 0; i < count; ++i)
            items.push_back({"/o/" + std::string(1500, 'x') + name + std::to_string(i), false});
        return items;
    };
    Items items = batch("new", 900);
    for (const char* older : {"old", "oldest"}) {
        items.push_back({});
        std::ranges::copy(batch(older, 800), std::back_inserter(items));
    }
    save(items);
    EXPECT_LE(saved().size(), SessionStore::largestFile);
    EXPECT_GT(saved().size(), SessionStore::largestFile - 2000);
    const Items kept = loaded().value_or(Items());
    const std::size_t newest = 901; // with the divider
    ASSERT_GT(kept.size(), newest);
    const auto rest = std::ptrdiff_t(kept.size() - newest);
    EXPECT_TRUE(std::equal(items.begin(), items.begin() + newest, kept.begin()));
    EXPECT_TRUE(std::equal(kept.begin() + newest, kept.end(), items.begin() + 1701 - rest))
        << "of the batch that does not fit, the newest, and nothing behind it";
    const Items large{{"/o/" + std::string(SessionStore::largestFile * 3 / 5, 'x'), false}};
    save({large[0], {}, large[0]});
    EXPECT_EQ(loaded(), large) << "the divider went with the batch behind it";
}

TEST_F(SessionStoreTest, TellsOfASaveThatFailed)
{
    save({{"/o/A.png", true}});
    const std::string before = saved();
    desktop.files.makeReadOnly(sessionFile.parent_path());
    save({});

    ASSERT_EQ(desktop.console.lines.size(), 1u);
    EXPECT_THAT(desktop.console.lines.front(), StartsWith("Session save failed: "));
    EXPECT_EQ(saved(), before);
}

TEST_F(SessionStoreTest, ClearsTheFileAndPutsUpWithNone)
{
    save({});
    SessionStore::clear(desktop.files);
    EXPECT_FALSE(desktop.files.exists(sessionFile));
    SessionStore::clear(desktop.files);
    EXPECT_TRUE(desktop.console.lines.empty());
}

TEST_F(SessionStoreTest, ReadsManySmallThingsInLittleTime)
{
    std::string text = R"({"items": [)";
    for (int i = 0; i < 100'000; ++i)
        text += R"({"type":"divider"},)";
    text += R"({"type": "image", "url": "/o/A.png"}]})";
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_THAT(loadedFrom(text), Optional(testing::SizeIs(100'001)));
    EXPECT_EQ(loadedFrom(R"({"items": [)" + std::string(1'900'000, '1') + "]}"), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST_F(SessionStoreTest, TakesTheLastOfTwoMembersOfOneName)
{
    EXPECT_THAT(
        loadedFrom(R"({"items": 1, "items": [{"type": "divider", "type": "image",
            "url": ["/o/B.png"], "url": "/o/A.png", "checked": 1, "checked": false}]})"),
        Optional(ElementsAre(Item{"/o/A.png", false})));
}

TEST_F(SessionStoreTest, PassesOverWhatStandsDeeperThanItsOwn)
{
    EXPECT_THAT(
        loadedFrom(R"({"more": [[[[[[{"items": []}]]]]]], "items": [
            {"type": "image", "url": "/o/A.png", "more": {"a": {"b": {"c": [1, {"d": 2}]}}}},
            {"type": "divider"}], "last": {"a": [{"b": [[]]}]}})"),
        Optional(ElementsAre(Item{"/o/A.png", true}, Item{})));
}

} // namespace
} // namespace tallowbay
