#pragma once

#include "platform/Hotkeys.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace tallowbay::contract {

// All hotkeys keep their header's promises. A backend offers:
//   Hotkeys& hotkeys();
//   void press(KeyCode, HotkeyModifiers);          the user presses the keys and lets them go
//   void takeElsewhere(KeyCode, HotkeyModifiers);  another program owns them from now on
//   void giveBackElsewhere(KeyCode, HotkeyModifiers);  that program ends, in a way that is told
//   bool runUntil(condition);                      runs the main queue until it holds; false after
//                                                  long
//   void pass(std::chrono::milliseconds);          runs the main queue for that long
template <typename Backend> class HotkeysContract : public testing::Test {
protected:
    static constexpr KeyCode x = 7;
    static constexpr KeyCode z = 6;
    static constexpr HotkeyModifiers both = hotkeyModifier::command | hotkeyModifier::control;
    static constexpr HotkeyId first{0x53534F58, 1};
    static constexpr HotkeyId second{0x5353414E, 2};
    static constexpr HotkeyId last{0x5353434C, 5};

    bool reports(const std::vector<HotkeyId>& expected)
    {
        return backend.runUntil([&] { return reported == expected; });
    }

    Backend backend;
    Hotkeys& hotkeys = backend.hotkeys();
    std::vector<HotkeyId> reported;
    Subscription handling = hotkeys.install([this](HotkeyId id) { reported.push_back(id); });
    // Presses of this one follow those of a test, to see that nothing more came before.
    std::optional<Subscription> end = hotkeys.registerHotkey(8, both, last);
    void pressLast() { backend.press(8, both); }
};

TYPED_TEST_SUITE_P(HotkeysContract);

TYPED_TEST_P(HotkeysContract, ReportsTheSignatureAndIdOfWhatWasPressed)
{
    const auto one = this->hotkeys.registerHotkey(this->x, this->both, this->first);
    const auto two = this->hotkeys.registerHotkey(this->z, this->both, this->second);
    ASSERT_TRUE(one && two);
    this->backend.press(this->z, this->both);
    this->backend.press(this->x, this->both);
    EXPECT_TRUE(this->reports({this->second, this->first}));
}

TYPED_TEST_P(HotkeysContract, ReachesWhatIsRegisteredAsLongAsItIs)
{
    EXPECT_FALSE(this->hotkeys.reaches(this->first));
    auto token = this->hotkeys.registerHotkey(this->x, this->both, this->first);
    EXPECT_TRUE(this->hotkeys.reaches(this->first));
    EXPECT_FALSE(this->hotkeys.reaches(this->second));
    token.reset();
    EXPECT_FALSE(this->hotkeys.reaches(this->first));
}

TYPED_TEST_P(HotkeysContract, KnowsEveryCombinationOfModifiers)
{
    using namespace hotkeyModifier;
    std::vector<Subscription> tokens;
    std::vector<HotkeyId> expected;
    for (const HotkeyModifiers modifiers :
         {command, shift, option, control, command | shift, option | shift, control | option,
          command | option, command | shift | option | control}) {
        const HotkeyId id{1, modifiers};
        auto token = this->hotkeys.registerHotkey(this->x, modifiers, id);
        ASSERT_TRUE(token);
        tokens.push_back(std::move(*token));
        expected.push_back(id);
    }
    for (const HotkeyId& id : expected)
        this->backend.press(this->x, id.id);
    EXPECT_TRUE(this->reports(expected));
}

TYPED_TEST_P(HotkeysContract, TellsACombinationByExactlyItsModifiers)
{
    const auto one = this->hotkeys.registerHotkey(this->x, this->both, this->first);
    this->backend.press(this->x, this->both | hotkeyModifier::shift);
    this->backend.press(this->x, hotkeyModifier::command);
    this->pressLast();
    EXPECT_TRUE(this->reports({this->last}));
}

TYPED_TEST_P(HotkeysContract, ReportsNothingOnceTheTokenHasEnded)
{
    auto one = this->hotkeys.registerHotkey(this->x, this->both, this->first);
    one.reset();
    this->backend.press(this->x, this->both);
    this->pressLast();
    EXPECT_TRUE(this->reports({this->last}));
}

TYPED_TEST_P(HotkeysContract, LetsATokenEndInsideTheHandler)
{
    auto one = this->hotkeys.registerHotkey(this->x, this->both, this->first);
    this->handling = this->hotkeys.install([&](HotkeyId id) {
        this->reported.push_back(id);
        one.reset();
    });
    this->backend.press(this->x, this->both);
    ASSERT_TRUE(this->reports({this->first}));
    this->backend.press(this->x, this->both);
    this->pressLast();
    EXPECT_TRUE(this->reports({this->first, this->last}));
}

TYPED_TEST_P(HotkeysContract, LetsTheHandlerEndInsideItself)
{
    const auto one = this->hotkeys.registerHotkey(this->x, this->both, this->first);
    this->handling = this->hotkeys.install([&](HotkeyId id) {
        auto& list = this->reported;
        this->handling.reset();
        list.push_back(id);
    });
    this->backend.press(this->x, this->both);
    this->backend.press(this->x, this->both);
    ASSERT_TRUE(this->reports({this->first}));
    this->backend.pass(std::chrono::milliseconds(50));
    EXPECT_EQ(this->reported.size(), 1u);
}

TYPED_TEST_P(HotkeysContract, DropsPressesWithoutAHandler)
{
    const auto one = this->hotkeys.registerHotkey(this->x, this->both, this->first);
    this->handling.reset();
    this->backend.press(this->x, this->both);
    this->backend.pass(std::chrono::milliseconds(50));
    this->handling = this->hotkeys.install([this](HotkeyId id) { this->reported.push_back(id); });
    this->pressLast();
    EXPECT_TRUE(this->reports({this->last}));
}

TYPED_TEST_P(HotkeysContract, ReplacesTheHandlerWithALaterOne)
{
    const auto later =
        this->hotkeys.install([this](HotkeyId) { this->reported.push_back(this->second); });
    this->handling.reset();
    this->pressLast();
    EXPECT_TRUE(this->reports({this->second}));
}

TYPED_TEST_P(HotkeysContract, RefusesWhatAnotherProgramOwnsAndKeepsTheRest)
{
    this->backend.takeElsewhere(this->x, this->both);
    EXPECT_FALSE(this->hotkeys.registerHotkey(this->x, this->both, this->first));
    const auto two = this->hotkeys.registerHotkey(this->z, this->both, this->second);
    EXPECT_TRUE(two);
    this->backend.press(this->x, this->both);
    this->backend.press(this->z, this->both);
    EXPECT_TRUE(this->reports({this->second}));
}

TYPED_TEST_P(HotkeysContract, RefusesAKeyThatNoKeyboardHas)
{
    EXPECT_FALSE(this->hotkeys.registerHotkey(0xFFFF, this->both, this->first));
    EXPECT_FALSE(this->hotkeys.registerHotkey(0xFFFFFFFF, this->both, this->first));
}

TYPED_TEST_P(HotkeysContract, ReportsTheNewestOfSeveralRegistrationsThatLasts)
{
    const auto older = this->hotkeys.registerHotkey(this->x, this->both, this->first);
    auto newer = this->hotkeys.registerHotkey(this->x, this->both, this->second);
    ASSERT_TRUE(older && newer);
    this->backend.press(this->x, this->both);
    ASSERT_TRUE(this->reports({this->second}));
    newer.reset();
    this->backend.press(this->x, this->both);
    EXPECT_TRUE(this->reports({this->second, this->first}));
}

TYPED_TEST_P(HotkeysContract, TellsWhenWhatWasRefusedMayBeHad)
{
    int told = 0;
    auto watching = this->hotkeys.watchForFreed([&] { ++told; });
    this->backend.takeElsewhere(this->x, this->both);
    ASSERT_FALSE(this->hotkeys.registerHotkey(this->x, this->both, this->first));
    this->backend.giveBackElsewhere(this->x, this->both);
    ASSERT_TRUE(this->backend.runUntil([&] { return told > 0; }));
    const auto one = this->hotkeys.registerHotkey(this->x, this->both, this->first);
    EXPECT_TRUE(one);
    this->backend.press(this->x, this->both);
    EXPECT_TRUE(this->reports({this->first}));
}

TYPED_TEST_P(HotkeysContract, TellsNobodyWhoHasStoppedToWatchForWhatIsFreed)
{
    int told = 0;
    auto watching = this->hotkeys.watchForFreed([&] { ++told; });
    watching.reset();
    bool laterTold = false;
    const auto later = this->hotkeys.watchForFreed([&] { laterTold = true; });
    this->backend.takeElsewhere(this->x, this->both);
    ASSERT_FALSE(this->hotkeys.registerHotkey(this->x, this->both, this->first));
    this->backend.giveBackElsewhere(this->x, this->both);
    EXPECT_TRUE(this->backend.runUntil([&] { return laterTold; }));
    EXPECT_EQ(told, 0);
}

REGISTER_TYPED_TEST_SUITE_P(
    HotkeysContract, ReachesWhatIsRegisteredAsLongAsItIs, ReportsTheSignatureAndIdOfWhatWasPressed,
    KnowsEveryCombinationOfModifiers, TellsACombinationByExactlyItsModifiers,
    ReportsNothingOnceTheTokenHasEnded, LetsATokenEndInsideTheHandler,
    LetsTheHandlerEndInsideItself, DropsPressesWithoutAHandler, ReplacesTheHandlerWithALaterOne,
    RefusesWhatAnotherProgramOwnsAndKeepsTheRest, RefusesAKeyThatNoKeyboardHas,
    ReportsTheNewestOfSeveralRegistrationsThatLasts, TellsWhenWhatWasRefusedMayBeHad,
    TellsNobodyWhoHasStoppedToWatchForWhatIsFreed);

} // namespace tallowbay::contract
