#include "hotkeys/HotkeyCenter.h"

#include "platform/headless/Desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Registration = headless::HandFedHotkeys::Registration;

constexpr HotkeyId ocrId{0x53534F58, 1};
constexpr HotkeyId openCloseId{0x5353414E, 2};
constexpr HotkeyId undoLastId{0x5353554C, 4};
constexpr HotkeyId clearAllId{0x5353434C, 5};

class HotkeyCenterTest : public testing::Test {
protected:
    HotkeyCenter::Actions actions()
    {
        return {
            [this] { done.push_back("ocr"); }, [this] { done.push_back("open"); },
            [this] { done.push_back("undo"); }, [this] { done.push_back("clear"); }};
    }

    void press(KeyCode keyCode, HotkeyModifiers modifiers)
    {
        hotkeys.press(keyCode, modifiers);
        desktop.dispatch.runMain();
    }

    std::vector<std::string> journalOf(const std::function<void()>& act)
    {
        hotkeys.journal.clear();
        act();
        return hotkeys.journal;
    }

    headless::Desktop desktop;
    headless::HandFedHotkeys& hotkeys = desktop.hotkeys;
    UserDefaults& defaults = desktop.defaults.standard();
    std::vector<std::string> done;
    HotkeyCenter center{desktop.dispatch, hotkeys, defaults, actions()};
    const HotkeyConfig other{31, 0x300, "Cmd+Shift+O"};
};

TEST_F(HotkeyCenterTest, ListensFirstAndRegistersTheFourInTheirOrder)
{
    EXPECT_THAT(
        journalOf([this] { center.start(); }),
        ElementsAre("install", "register 1", "register 2", "register 4", "register 5"));
}

TEST_F(HotkeyCenterTest, RegistersTheDefaultsIfNothingIsStored)
{
    center.start();
    EXPECT_THAT(
        hotkeys.registered(),
        ElementsAre(
            Registration{{7, 0x300}, ocrId}, Registration{{49, 0x800}, openCloseId},
            Registration{{6, 0x1100}, undoLastId}, Registration{{8, 0x1100}, clearAllId}));
    EXPECT_FALSE(defaults.value("hotkeyOCR"));
}

TEST_F(HotkeyCenterTest, RegistersWhatIsStored)
{
    other.save(defaults, "hotkeyOpenClose");
    center.start();
    EXPECT_THAT(hotkeys.registered(), testing::Contains(Registration{{31, 0x300}, openCloseId}));
    EXPECT_EQ(center.config(HotkeyTarget::openClose), other);
}

TEST_F(HotkeyCenterTest, RegistersTheDefaultIfWhatIsStoredHasAWrongType)
{
    defaults.set(
        "hotkeyUndoLast",
        {DefaultsValue::Dictionary{
            {"keyCode", {std::int64_t{31}}},
            {"modifiers", {"768"}},
            {"displayString", {"Cmd+Shift+O"}}}});
    center.start();
    EXPECT_THAT(hotkeys.registered(), testing::Contains(Registration{{6, 0x1100}, undoLastId}));
    EXPECT_EQ(center.config(HotkeyTarget::undoLast).displayString, "Cmd+Ctrl+Z");
}

TEST_F(HotkeyCenterTest, DoesWhatEachHotkeyStandsFor)
{
    center.start();
    press(7, 0x300);
    press(49, 0x800);
    press(6, 0x1100);
    press(8, 0x1100);
    EXPECT_THAT(done, ElementsAre("ocr", "open", "undo", "clear"));
}

TEST_F(HotkeyCenterTest, LooksAtTheIdAlone)
{
    center.start();
    hotkeys.report({0, 4});
    desktop.dispatch.runMain();
    EXPECT_THAT(done, ElementsAre("undo"));
}

TEST_F(HotkeyCenterTest, DoesNothingOnUnknownIds)
{
    center.start();
    for (const std::uint32_t id : {0u, 3u, 6u, 0xFFFFFFFFu})
        hotkeys.report({0x53534F58, id});
    desktop.dispatch.runMain();
    EXPECT_THAT(done, IsEmpty());
}

TEST_F(HotkeyCenterTest, DoesNothingWhileAHotkeyIsRecorded)
{
    center.start();
    center.isRecordingHotkey = true;
    for (const auto& registration : hotkeys.registered())
        press(registration.combination.first, registration.combination.second);
    EXPECT_THAT(done, IsEmpty());

    center.isRecordingHotkey = false;
    press(6, 0x1100);
    EXPECT_THAT(done, ElementsAre("undo"));
}

TEST_F(HotkeyCenterTest, MayLackAnAction)
{
    HotkeyCenter bare(desktop.dispatch, hotkeys, defaults, {});
    bare.start();
    press(7, 0x300);
    EXPECT_THAT(done, IsEmpty());
}

TEST_F(HotkeyCenterTest, GoesOnWithoutWhatTheSystemRefuses)
{
    hotkeys.takeElsewhere(6, 0x1100);
    EXPECT_THAT(
        journalOf([this] { center.start(); }),
        ElementsAre("install", "register 1", "register 2", "refuse 4", "register 5"));
    EXPECT_EQ(center.working(HotkeyTarget::undoLast), std::nullopt);
    press(6, 0x1100);
    press(8, 0x1100);
    EXPECT_THAT(done, ElementsAre("clear"));
}

// The second choice.

TEST_F(HotkeyCenterTest, TakesTheSecondChoiceForADefaultThatIsRefused)
{
    hotkeys.takeElsewhere(49, 0x800);
    EXPECT_THAT(
        journalOf([this] { center.start(); }),
        ElementsAre("install", "register 1", "refuse 2", "register 2", "register 4", "register 5"));
    EXPECT_EQ(center.working(HotkeyTarget::openClose), (HotkeyConfig{49, 0x900, "Cmd+Opt+Space"}));
    EXPECT_EQ(center.config(HotkeyTarget::openClose).displayString, "Opt+Space");
    press(49, 0x900);
    EXPECT_THAT(done, ElementsAre("open"));
    EXPECT_FALSE(defaults.value("hotkeyOpenClose")) << "it is nobody's wish";
}

TEST_F(HotkeyCenterTest, SaysThatTheDefaultWorks)
{
    EXPECT_EQ(center.working(HotkeyTarget::openClose), std::nullopt) << "not yet";
    center.start();
    for (const HotkeyTarget target : hotkeyTargets)
        EXPECT_EQ(center.working(target), center.config(target));
    center.stop();
    EXPECT_EQ(center.working(HotkeyTarget::openClose), std::nullopt);
}

TEST_F(HotkeyCenterTest, TakesNoSecondChoiceForARecordedHotkey)
{
    hotkeys.takeElsewhere(49, 0x800);
    traitsOf(HotkeyTarget::openClose).defaultConfig.save(defaults, "hotkeyOpenClose");
    EXPECT_THAT(
        journalOf([this] { center.start(); }),
        ElementsAre("install", "register 1", "refuse 2", "register 4", "register 5"));
    EXPECT_THAT(
        journalOf([this] {
            center.updateHotkey(
                HotkeyTarget::openClose, traitsOf(HotkeyTarget::openClose).defaultConfig);
        }),
        ElementsAre("refuse 2"));
    EXPECT_EQ(center.working(HotkeyTarget::openClose), std::nullopt);
}

TEST_F(HotkeyCenterTest, HasNothingWhereTheSecondChoiceIsRefusedToo)
{
    hotkeys.takeElsewhere(49, 0x800);
    hotkeys.takeElsewhere(49, 0x900);
    center.start();
    EXPECT_EQ(center.working(HotkeyTarget::openClose), std::nullopt);
    press(49, 0x900);
    EXPECT_THAT(done, IsEmpty());
}

TEST_F(HotkeyCenterTest, LeavesTheSecondChoiceToATargetForWhichItWasRecorded)
{
    hotkeys.takeElsewhere(49, 0x800);
    HotkeyConfig{49, 0x900, "Cmd+Opt+Space"}.save(defaults, "hotkeyClearAll");
    center.start();
    EXPECT_EQ(center.working(HotkeyTarget::openClose), std::nullopt);
    press(49, 0x900);
    EXPECT_THAT(done, ElementsAre("clear"));
}

TEST_F(HotkeyCenterTest, GivesTheSecondChoiceUpWhenItIsRecordedForAnotherTarget)
{
    hotkeys.takeElsewhere(49, 0x800);
    center.start();
    EXPECT_THAT(
        journalOf([this] {
            center.updateHotkey(HotkeyTarget::ocr, {49, 0x900, "Cmd+Opt+Space"});
        }),
        ElementsAre("unregister 1", "unregister 2", "register 1", "refuse 2"));
    EXPECT_EQ(center.working(HotkeyTarget::openClose), std::nullopt);
    press(49, 0x900);
    EXPECT_THAT(done, ElementsAre("ocr"));
}

TEST_F(HotkeyCenterTest, TakesTheSecondChoiceOnceItIsFree)
{
    hotkeys.takeElsewhere(49, 0x800);
    center.start();
    for (const bool byReset : {false, true}) {
        center.updateHotkey(HotkeyTarget::clearAll, {49, 0x900, "Cmd+Opt+Space"});
        EXPECT_EQ(center.working(HotkeyTarget::openClose), std::nullopt);
        if (byReset)
            center.resetHotkeysToDefault();
        else
            center.updateHotkey(HotkeyTarget::clearAll, other);
        ASSERT_TRUE(center.working(HotkeyTarget::openClose));
        done.clear();
        press(49, 0x900);
        EXPECT_THAT(done, ElementsAre("open"));
    }
}

TEST_F(HotkeyCenterTest, TakesTheSecondChoiceAgainAfterAReset)
{
    hotkeys.takeElsewhere(49, 0x800);
    center.start();
    center.updateHotkey(HotkeyTarget::openClose, other);
    EXPECT_EQ(center.working(HotkeyTarget::openClose), other);
    center.resetHotkeysToDefault();
    EXPECT_EQ(center.working(HotkeyTarget::openClose)->displayString, "Cmd+Opt+Space");
}

TEST_F(HotkeyCenterTest, GivesTheFourBackInTheirOrder)
{
    center.start();
    EXPECT_THAT(
        journalOf([this] { center.stop(); }),
        ElementsAre("unregister 1", "unregister 2", "unregister 4", "unregister 5"));
    EXPECT_THAT(journalOf([this] { center.stop(); }), IsEmpty());
}

TEST_F(HotkeyCenterTest, SkipsOnStoppingWhatWasRefused)
{
    hotkeys.takeElsewhere(6, 0x1100);
    center.start();
    EXPECT_THAT(
        journalOf([this] { center.stop(); }),
        ElementsAre("unregister 1", "unregister 2", "unregister 5"));
}

// What was refused is tried again.

TEST_F(HotkeyCenterTest, TakesWhatWasRefusedOnceItIsToldThatItMayBeFree)
{
    hotkeys.takeElsewhere(6, 0x1100);
    center.start();
    hotkeys.giveBackElsewhere(6, 0x1100);
    hotkeys.tellFreed();
    desktop.dispatch.runMain();
    EXPECT_EQ(center.working(HotkeyTarget::undoLast), center.config(HotkeyTarget::undoLast));
    press(6, 0x1100);
    EXPECT_THAT(done, ElementsAre("undo"));
}

TEST_F(HotkeyCenterTest, TakesWhatWasRefusedWithinTenSecondsIfNobodyTells)
{
    hotkeys.takeElsewhere(6, 0x1100);
    center.start();
    hotkeys.giveBackElsewhere(6, 0x1100);
    desktop.dispatch.advance(9999ms);
    EXPECT_FALSE(center.working(HotkeyTarget::undoLast));
    desktop.dispatch.advance(1ms);
    EXPECT_TRUE(center.working(HotkeyTarget::undoLast));
}

TEST_F(HotkeyCenterTest, TakesWhatTheUserRecordedOnceItIsFree)
{
    hotkeys.takeElsewhere(31, 0x300);
    center.start();
    center.updateHotkey(HotkeyTarget::ocr, other);
    EXPECT_FALSE(center.working(HotkeyTarget::ocr));
    hotkeys.giveBackElsewhere(31, 0x300);
    desktop.dispatch.advance(10s);
    EXPECT_EQ(center.working(HotkeyTarget::ocr), other);
}

TEST_F(HotkeyCenterTest, TakesTheDefaultInPlaceOfTheSecondChoiceOnceItIsFree)
{
    hotkeys.takeElsewhere(49, 0x800);
    center.start();
    EXPECT_THAT(journalOf([this] { desktop.dispatch.advance(10s); }), ElementsAre("refuse 2"))
        << "the second choice goes on working";
    press(49, 0x900);
    EXPECT_THAT(done, ElementsAre("open"));

    hotkeys.giveBackElsewhere(49, 0x800);
    EXPECT_THAT(
        journalOf([this] { desktop.dispatch.advance(10s); }),
        ElementsAre("register 2", "unregister 2"));
    EXPECT_EQ(center.working(HotkeyTarget::openClose)->displayString, "Opt+Space");
    press(49, 0x900);
    EXPECT_THAT(done, ElementsAre("open")) << "given back";
    press(49, 0x800);
    EXPECT_THAT(done, ElementsAre("open", "open"));
}

// It counted as working, although another program had its keys in the layout that was now active.
TEST_F(HotkeyCenterTest, SaysThatACombinationIsLostAndTakesItAgainOnceItCan)
{
    center.start();
    hotkeys.takeElsewhere(6, 0x1100);
    EXPECT_EQ(center.working(HotkeyTarget::undoLast), std::nullopt);
    hotkeys.tellFreed();
    desktop.dispatch.runMain();
    EXPECT_EQ(center.working(HotkeyTarget::undoLast), std::nullopt);
    hotkeys.giveBackElsewhere(6, 0x1100);
    EXPECT_THAT(
        journalOf([this] { desktop.dispatch.advance(10s); }),
        testing::AnyOf(IsEmpty(), ElementsAre("register 4", "unregister 4")));
    press(6, 0x1100);
    EXPECT_THAT(done, ElementsAre("undo"));
}

TEST_F(HotkeyCenterTest, TriesALostCombinationAgainAndAgain)
{
    center.start();
    hotkeys.takeElsewhere(6, 0x1100);
    hotkeys.tellFreed();
    desktop.dispatch.runMain();
    EXPECT_THAT(
        journalOf([this] { desktop.dispatch.advance(20s); }), ElementsAre("refuse 4", "refuse 4"));
}

TEST_F(HotkeyCenterTest, TakesTheSecondChoiceForADefaultThatIsLostAndGivesItUpAgain)
{
    center.start();
    hotkeys.takeElsewhere(49, 0x800);
    hotkeys.tellFreed();
    desktop.dispatch.runMain();
    ASSERT_TRUE(center.working(HotkeyTarget::openClose));
    EXPECT_EQ(center.working(HotkeyTarget::openClose)->displayString, "Cmd+Opt+Space");
    hotkeys.giveBackElsewhere(49, 0x800);
    desktop.dispatch.advance(10s);
    EXPECT_EQ(center.working(HotkeyTarget::openClose)->displayString, "Opt+Space");
    EXPECT_EQ(hotkeys.registered().size(), 4u);
}

TEST_F(HotkeyCenterTest, AsksForNothingWhileNothingIsRefused)
{
    center.start();
    EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
    hotkeys.takeElsewhere(31, 0x300);
    center.updateHotkey(HotkeyTarget::ocr, other);
    EXPECT_EQ(desktop.dispatch.timerCount(), 1u);
    center.resetHotkeysToDefault();
    EXPECT_EQ(desktop.dispatch.timerCount(), 0u);
    hotkeys.tellFreed();
    EXPECT_THAT(journalOf([this] { desktop.dispatch.runMain(); }), IsEmpty());
}

TEST_F(HotkeyCenterTest, AsksForNothingOnceStopped)
{
    hotkeys.takeElsewhere(6, 0x1100);
    center.start();
    center.stop();
    hotkeys.giveBackElsewhere(6, 0x1100);
    hotkeys.tellFreed();
    EXPECT_THAT(journalOf([this] { desktop.dispatch.advance(60s); }), IsEmpty());
}

// Update.

TEST_F(HotkeyCenterTest, ReplacesOneHotkey)
{
    center.start();
    EXPECT_THAT(
        journalOf([this] { center.updateHotkey(HotkeyTarget::ocr, other); }),
        ElementsAre("unregister 1", "register 1"));
    EXPECT_EQ(center.config(HotkeyTarget::ocr), other);
    press(7, 0x300);
    EXPECT_THAT(done, IsEmpty());
    press(31, 0x300);
    EXPECT_THAT(done, ElementsAre("ocr"));
}

TEST_F(HotkeyCenterTest, StoresTheNewHotkeyBeforeItIsRegistered)
{
    center.start();
    hotkeys.onChange = [this] {
        const bool stored = defaults.value("hotkeyOCR").has_value();
        EXPECT_EQ(stored, hotkeys.journal.back() == "register 1");
    };
    center.updateHotkey(HotkeyTarget::ocr, other);
    hotkeys.onChange = nullptr;
}

TEST_F(HotkeyCenterTest, StoresEachTargetUnderItsOwnKey)
{
    for (const HotkeyTarget target : hotkeyTargets) {
        const HotkeyConfig config{31, 0x1000 + static_cast<std::uint32_t>(target), "x"};
        center.updateHotkey(target, config);
        EXPECT_EQ(HotkeyConfig::load(defaults, traitsOf(target).defaultsKey, {}), config);
    }
}

TEST_F(HotkeyCenterTest, StoresAHotkeyThatIsRefused)
{
    center.start();
    hotkeys.takeElsewhere(31, 0x300);
    center.updateHotkey(HotkeyTarget::ocr, other);
    EXPECT_EQ(center.config(HotkeyTarget::ocr), other);
    press(7, 0x300);
    EXPECT_THAT(done, IsEmpty());
}

TEST_F(HotkeyCenterTest, TakesAHotkeyAgainThatWasRefusedBefore)
{
    hotkeys.takeElsewhere(6, 0x1100);
    center.start();
    EXPECT_THAT(
        journalOf([this] { center.updateHotkey(HotkeyTarget::undoLast, other); }),
        ElementsAre("register 4"));
}

// Reset.

TEST_F(HotkeyCenterTest, ResetsInTheOrderOfTheSettings)
{
    center.start();
    EXPECT_THAT(
        journalOf([this] { center.resetHotkeysToDefault(); }),
        ElementsAre(
            "unregister 2", "register 2", "unregister 1", "register 1", "unregister 4",
            "register 4", "unregister 5", "register 5"));
}

TEST_F(HotkeyCenterTest, StoresNothingAfterAReset)
{
    for (const HotkeyTarget target : hotkeyTargets)
        center.updateHotkey(target, other);
    center.resetHotkeysToDefault();
    for (const HotkeyTarget target : hotkeyTargets) {
        EXPECT_FALSE(defaults.value(traitsOf(target).defaultsKey));
        EXPECT_EQ(center.config(target), traitsOf(target).defaultConfig);
    }
}

TEST_F(HotkeyCenterTest, HasTheDefaultsAfterAReset)
{
    other.save(defaults, "hotkeyClearAll");
    center.start();
    center.resetHotkeysToDefault();
    EXPECT_THAT(
        hotkeys.registered(),
        testing::UnorderedElementsAre(
            Registration{{7, 0x300}, ocrId}, Registration{{49, 0x800}, openCloseId},
            Registration{{6, 0x1100}, undoLastId}, Registration{{8, 0x1100}, clearAllId}));
}

TEST_F(HotkeyCenterTest, HasTheDefaultsAfterAResetOfHotkeysThatWereExchanged)
{
    center.start();
    center.updateHotkey(HotkeyTarget::openClose, traitsOf(HotkeyTarget::ocr).defaultConfig);
    center.updateHotkey(HotkeyTarget::ocr, traitsOf(HotkeyTarget::openClose).defaultConfig);
    center.resetHotkeysToDefault();
    press(49, 0x800);
    press(7, 0x300);
    EXPECT_THAT(done, ElementsAre("open", "ocr"));
}

TEST_F(HotkeyCenterTest, MayBeGoneWhenAPressArrives)
{
    {
        HotkeyCenter passing(desktop.dispatch, hotkeys, defaults, actions());
        passing.start();
        hotkeys.press(7, 0x300);
    }
    desktop.dispatch.runMain();
    EXPECT_THAT(done, IsEmpty());
    EXPECT_FALSE(hotkeys.installed());
    EXPECT_THAT(hotkeys.registered(), IsEmpty());
}

} // namespace
} // namespace tallowbay
