#pragma once

#include "platform/StatusBar.h"

#include <gmock/gmock.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace tallowbay::contract {

// A row of a menu as a person sees it; a separator has no title.
struct SeenRow {
    std::string title;
    bool enabled = false;
    bool operator==(const SeenRow&) const = default;
};

inline void PrintTo(const SeenRow& row, std::ostream* out)
{
    *out << '"' << row.title << (row.enabled ? "\"" : "\", disabled");
}

// Every status bar keeps its header's promises. A backend offers:
//   StatusBar& bar();
//   void startBar();   the desktop has none at first
//   void endBar();
//   bool showsIcons(count);         runs the main queue until so many icons stand in the bar;
//                                   false if that never comes
//   std::vector<SeenRow> menu();    of the only item
//   void choose(title);             the row of that menu, as a person would
//   void middleClick();             on the only icon; runs the main queue until it is over
template <typename Backend> class StatusBarContract : public testing::Test {
protected:
    static MenuItem row(const std::string& title, std::function<void()> action = nullptr)
    {
        MenuItem item;
        item.title = title;
        item.action = std::move(action);
        return item;
    }
    std::unique_ptr<StatusItem> makeItem(const Menu& menu = {})
    {
        return backend.bar().makeItem({"MenubarIcon", 18, {}}, menu);
    }

    Backend backend;
};

TYPED_TEST_SUITE_P(StatusBarContract);

TYPED_TEST_P(StatusBarContract, ShowsTheIconInABarThatIsThere)
{
    this->backend.startBar();
    const auto item = this->makeItem();
    ASSERT_TRUE(item);
    EXPECT_TRUE(this->backend.showsIcons(1));
}

TYPED_TEST_P(StatusBarContract, ShowsTheIconAsSoonAsThereIsABar)
{
    const auto item = this->makeItem();
    ASSERT_TRUE(item);
    EXPECT_TRUE(this->backend.showsIcons(0));
    this->backend.startBar();
    EXPECT_TRUE(this->backend.showsIcons(1));
    this->backend.endBar();
    EXPECT_TRUE(this->backend.showsIcons(0));
    this->backend.startBar();
    EXPECT_TRUE(this->backend.showsIcons(1));
}

TYPED_TEST_P(StatusBarContract, ShowsATitleWhereThereIsNoPicture)
{
    this->backend.startBar();
    const auto item = this->backend.bar().makeItem({{}, 0, "TB"}, {});
    EXPECT_TRUE(this->backend.showsIcons(1));
}

TYPED_TEST_P(StatusBarContract, TakesAnIconAwayWithItsItemAndLeavesTheOthers)
{
    this->backend.startBar();
    const auto first = this->makeItem();
    auto second = this->makeItem();
    EXPECT_TRUE(this->backend.showsIcons(2));
    second.reset();
    EXPECT_TRUE(this->backend.showsIcons(1));
}

TYPED_TEST_P(StatusBarContract, MayLoseAnItemThatNoBarHasShown)
{
    auto item = this->makeItem();
    item.reset();
    this->backend.startBar();
    EXPECT_TRUE(this->backend.showsIcons(0));
}

TYPED_TEST_P(StatusBarContract, ShowsTheMenusRowsInTheirOrder)
{
    const auto item = this->makeItem(
        {this->row("Running"), MenuItem::makeSeparator(), this->row("Settings", [] {}),
         this->row("Quit", [] {})});
    EXPECT_THAT(
        this->backend.menu(),
        testing::ElementsAre(
            SeenRow{"Running", false}, SeenRow{"", false}, SeenRow{"Settings", true},
            SeenRow{"Quit", true}));
}

TYPED_TEST_P(StatusBarContract, ShowsATitleLetterForLetter)
{
    const auto item = this->makeItem({this->row("Größe & \"Rest\" 100% &c…", [] {})});
    EXPECT_THAT(
        this->backend.menu(), testing::ElementsAre(SeenRow{"Größe & \"Rest\" 100% &c…", true}));
}

TYPED_TEST_P(StatusBarContract, RunsTheActionOfTheRowThatIsChosen)
{
    std::vector<std::string> ran;
    const auto item = this->makeItem(
        {this->row("Settings", [&] { ran.push_back("Settings"); }),
         this->row("Quit", [&] { ran.push_back("Quit"); }), this->row("Running")});
    EXPECT_THAT(ran, testing::IsEmpty());
    for (const char* title : {"Quit", "Settings", "Running", "Quit"})
        this->backend.choose(title);
    EXPECT_THAT(ran, testing::ElementsAre("Quit", "Settings", "Quit"));
}

TYPED_TEST_P(StatusBarContract, LetsAnItemGoInsideItsOwnAction)
{
    std::unique_ptr<StatusItem> item;
    std::string seen;
    const auto held = std::make_shared<std::string>("still here");
    item = this->makeItem({this->row("Renew", [&item, &seen, held] {
        item.reset();
        seen = *held;
    })});
    this->backend.choose("Renew");
    EXPECT_EQ(seen, "still here");
    this->backend.startBar();
    EXPECT_TRUE(this->backend.showsIcons(0));
}

TYPED_TEST_P(StatusBarContract, TellsOfAMiddleClickOnTheIcon)
{
    this->backend.startBar();
    int clicks = 0;
    const auto item =
        this->backend.bar().makeItem({"MenubarIcon", 18, {}, [&clicks] { ++clicks; }}, {});
    ASSERT_TRUE(this->backend.showsIcons(1));
    EXPECT_EQ(clicks, 0);
    this->backend.middleClick();
    EXPECT_EQ(clicks, 1);
}

TYPED_TEST_P(StatusBarContract, LetsAnItemGoInsideAMiddleClick)
{
    this->backend.startBar();
    std::unique_ptr<StatusItem> item;
    item = this->backend.bar().makeItem({"MenubarIcon", 18, {}, [&item] { item.reset(); }}, {});
    ASSERT_TRUE(this->backend.showsIcons(1));
    this->backend.middleClick();
    EXPECT_FALSE(item);
    EXPECT_TRUE(this->backend.showsIcons(0));
}

REGISTER_TYPED_TEST_SUITE_P(
    StatusBarContract, ShowsTheIconInABarThatIsThere, ShowsTheIconAsSoonAsThereIsABar,
    ShowsATitleWhereThereIsNoPicture, TakesAnIconAwayWithItsItemAndLeavesTheOthers,
    MayLoseAnItemThatNoBarHasShown, ShowsTheMenusRowsInTheirOrder, ShowsATitleLetterForLetter,
    RunsTheActionOfTheRowThatIsChosen, LetsAnItemGoInsideItsOwnAction, TellsOfAMiddleClickOnTheIcon,
    LetsAnItemGoInsideAMiddleClick);

} // namespace tallowbay::contract
