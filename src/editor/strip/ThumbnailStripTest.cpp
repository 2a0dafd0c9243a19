#include "editor/strip/ThumbnailStrip.h"

#include <gmock/gmock.h>

namespace tallowbay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using Paths = ThumbnailStrip::Paths;
using Item = SessionStore::Item;

bool always(const std::filesystem::path&)
{
    return true;
}

class ThumbnailStripTest : public testing::Test {
protected:
    void add(const std::string& names)
    {
        for (const char name : names)
            strip.addURL(std::string("/o/") + name);
    }

    // What stands on the screen: "D+|A-" is a checked D, a divider and an A that is not.
    std::string shown() const
    {
        std::string text;
        for (const auto& slot : strip.slots()) {
            if (slot)
                text +=
                    strip.at(*slot).url.filename().string() + (strip.at(*slot).checked ? "+" : "-");
            else
                text += "|";
        }
        return text;
    }

    std::string badges() const
    {
        std::string text;
        for (const auto& slot : strip.slots())
            text += slot ? std::to_string(strip.at(*slot).badgeNumber) : "|";
        return text;
    }

    std::size_t indexOf(const std::string& name) const
    {
        for (std::size_t index = 0; index < strip.size(); ++index) {
            if (strip.at(index).url == "/o/" + name)
                return index;
        }
        return 99;
    }

    ThumbnailStrip strip;
};

TEST_F(ThumbnailStripTest, ShowsABatchFromLeftToRightAllChecked)
{
    add("ABC");
    EXPECT_EQ(shown(), "A+B+C+");
    EXPECT_EQ(badges(), "123");
    EXPECT_THAT(strip.checkedURLs(), ElementsAre("/o/A", "/o/B", "/o/C"));
}

TEST_F(ThumbnailStripTest, PutsANewBatchInFrontAndUnchecksTheOlderOnes)
{
    add("ABC");
    EXPECT_TRUE(strip.insertBatchDivider());
    add("DE");
    EXPECT_EQ(shown(), "D+E+|A-B-C-");
    EXPECT_EQ(badges(), "12|123");
    EXPECT_THAT(strip.urlsForClipboard(), ElementsAre("/o/D", "/o/E"));
}

TEST_F(ThumbnailStripTest, HasNoDividerBeforeTheFirstScreenshot)
{
    EXPECT_FALSE(strip.insertBatchDivider());
    add("A");
    EXPECT_EQ(shown(), "A+");
}

TEST_F(ThumbnailStripTest, TakesTheSameFileTwice)
{
    add("AA");
    EXPECT_EQ(shown(), "A+A+");
    EXPECT_EQ(badges(), "12");
}

TEST_F(ThumbnailStripTest, NothingCheckedMeansAll)
{
    add("AB");
    EXPECT_TRUE(strip.uncheckAll());
    EXPECT_THAT(strip.checkedURLs(), IsEmpty());
    EXPECT_THAT(strip.urlsForClipboard(), ElementsAre("/o/A", "/o/B"));
    EXPECT_FALSE(strip.uncheckAll());
}

TEST_F(ThumbnailStripTest, ListsWhatIsCheckedInTheOrderOfTheList)
{
    add("AB");
    strip.insertBatchDivider();
    add("C");
    strip.at(indexOf("A")).checked = true;
    EXPECT_EQ(shown(), "C+|A+B-");
    EXPECT_THAT(strip.checkedURLs(), ElementsAre("/o/A", "/o/C"));
}

TEST_F(ThumbnailStripTest, UnchecksTheLastOfTheListThatIsChecked)
{
    add("ABC");
    strip.at(2).checked = false;
    EXPECT_THAT(strip.uncheckLast(), Optional(1u));
    EXPECT_EQ(shown(), "A+B-C-");
    EXPECT_THAT(strip.uncheckLast(), Optional(0u));
    EXPECT_EQ(strip.uncheckLast(), std::nullopt);
}

TEST_F(ThumbnailStripTest, MovesByWhatIsSeenAndOverDividers)
{
    add("AB");
    strip.insertBatchDivider();
    add("CD"); // C D | A B
    EXPECT_THAT(strip.neighbour(indexOf("D"), 1), Optional(indexOf("A")));
    EXPECT_THAT(strip.neighbour(indexOf("A"), -1), Optional(indexOf("D")));
    EXPECT_THAT(strip.neighbour(indexOf("C"), 1), Optional(indexOf("D")));
}

TEST_F(ThumbnailStripTest, DoesNotWrapAround)
{
    add("AB");
    EXPECT_EQ(strip.neighbour(0, -1), std::nullopt);
    EXPECT_EQ(strip.neighbour(1, 1), std::nullopt);
    EXPECT_EQ(strip.neighbour(7, 1), std::nullopt);
}

TEST_F(ThumbnailStripTest, DropsAScreenshotAndRenumbersTheOthers)
{
    add("ABC");
    EXPECT_TRUE(strip.remove({"/o/B"}));
    EXPECT_EQ(shown(), "A+C+");
    EXPECT_EQ(badges(), "13"); // a cell keeps what it was built with
    EXPECT_THAT(strip.slots(), ElementsAre(Optional(0u), Optional(1u)));
    EXPECT_FALSE(strip.remove({"/o/B"}));
}

TEST_F(ThumbnailStripTest, DropsEveryPlaceOfAFile)
{
    add("ABA");
    EXPECT_TRUE(strip.remove({"/o/A", "/o/Z"}));
    EXPECT_EQ(shown(), "B+");
}

TEST_F(ThumbnailStripTest, DropsTheDividerOfABatchThatIsGone)
{
    add("AB");
    strip.insertBatchDivider();
    add("C");
    strip.insertBatchDivider();
    add("D"); // D | C | A B
    strip.remove({"/o/D"});
    EXPECT_EQ(shown(), "C-|A-B-");
    strip.remove({"/o/A", "/o/B"});
    EXPECT_EQ(shown(), "C-");
}

TEST_F(ThumbnailStripTest, KeepsOneDividerWhereTheBatchInTheMiddleIsGone)
{
    add("A");
    strip.insertBatchDivider();
    add("B");
    strip.insertBatchDivider();
    add("C");
    strip.remove({"/o/B"});
    EXPECT_EQ(shown(), "C+|A-");
}

TEST_F(ThumbnailStripTest, OnlyLimitsThePlaceOfTheNextScreenshot)
{
    add("A");
    strip.insertBatchDivider();
    add("BC"); // B C | A, the next one goes to the third place
    strip.remove({"/o/B"});
    add("D");
    EXPECT_EQ(shown(), "C+|D+A-");
}

TEST_F(ThumbnailStripTest, GoesOnAfterEverythingWasDropped)
{
    add("ABC");
    strip.remove({"/o/A", "/o/B", "/o/C"});
    EXPECT_TRUE(strip.empty());
    add("D");
    EXPECT_EQ(shown(), "D+");
    EXPECT_EQ(badges(), "1");
}

TEST_F(ThumbnailStripTest, ColoursTheSixthHeaderLikeTheFirst)
{
    add("ABCDEF");
    EXPECT_EQ(strip.at(0).headerColor, 0u);
    EXPECT_EQ(strip.at(4).headerColor, 4u);
    EXPECT_EQ(strip.at(5).headerColor, 0u);
}

TEST_F(ThumbnailStripTest, SavesWhatStandsOnTheScreen)
{
    add("ABC");
    strip.insertBatchDivider();
    add("D");
    EXPECT_THAT(
        strip.session(),
        ElementsAre(
            Item{"/o/D", true}, Item{}, Item{"/o/A", false}, Item{"/o/B", false},
            Item{"/o/C", false}));
}

TEST_F(ThumbnailStripTest, RestoresItUncheckedAndShowsTheLastOfTheLeftmostBatch)
{
    const auto selected = strip.restore(
        {{"/o/D", true}, {}, {"/o/A", false}, {"/o/B", false}, {"/o/C", false}}, always);
    EXPECT_EQ(shown(), "D-|A-B-C-");
    EXPECT_EQ(badges(), "1|123");
    EXPECT_THAT(selected, Optional(0u));
    EXPECT_TRUE(strip.pendingDivider);

    strip.insertBatchDivider();
    add("E");
    EXPECT_EQ(shown(), "E+|D-|A-B-C-");
    EXPECT_EQ(badges(), "1|1|123");
}

TEST_F(ThumbnailStripTest, ShowsTheLastOfALongLeftmostBatch)
{
    EXPECT_THAT(
        strip.restore({{"/o/A", true}, {"/o/B", true}, {}, {"/o/C", true}}, always), Optional(1u));
    EXPECT_EQ(badges(), "12|1");
}

TEST_F(ThumbnailStripTest, AddsToTheLeftmostBatchOfWhatWasRestored)
{
    strip.restore({{"/o/A", true}, {"/o/B", true}, {}, {"/o/C", true}}, always);
    add("D");
    EXPECT_EQ(shown(), "A-B-D+|C-");
    EXPECT_EQ(badges(), "123|1");
}

TEST_F(ThumbnailStripTest, RestoresNoDividerThatLeadsOrIsDoubled)
{
    const auto exists = [](const auto& path) { return path != "/o/Y"; };
    strip.restore({{}, {"/o/X", true}, {}, {}, {"/o/Y", true}}, exists);
    EXPECT_EQ(shown(), "X-|");
}

TEST_F(ThumbnailStripTest, RestoresNothingOfWhatIsGone)
{
    const auto exists = [](const auto&) { return false; };
    EXPECT_EQ(strip.restore({{"/o/X", true}, {}}, exists), std::nullopt);
    EXPECT_TRUE(strip.empty());
    EXPECT_TRUE(strip.slots().empty());
    EXPECT_FALSE(strip.pendingDivider);
}

TEST_F(ThumbnailStripTest, GivesEveryScreenshotANumberOfItsOwn)
{
    add("AA");
    strip.remove({"/o/A"});
    add("A");
    EXPECT_EQ(strip.at(0).id, 3u);
}

using ThumbnailStripDeathTest = ThumbnailStripTest;

TEST_F(ThumbnailStripDeathTest, AnIndexOutsideOfTheListStopsTheProcess)
{
    EXPECT_DEATH((void)strip.at(0), "index out of range");
}

} // namespace
} // namespace tallowbay
