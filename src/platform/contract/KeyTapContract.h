#pragma once

#include "platform/Keys.h"
#include "platform/contract/PrintKeys.h"

#include <gmock/gmock.h>

#include <atomic>
#include <mutex>
#include <vector>

namespace tallowbay::contract {

// All key taps keep their header's promises. A backend offers:
//   KeyTap& tap();
//   void press(KeyCode, EventFlags); // the user presses a key and lets it go
//   void holdUntilItRepeats(KeyCode, EventFlags); // the user holds it, and then lets it go
//   void postOurselves(KeyCode, EventFlags); // down and up, by the key poster
//   void click(); // the user presses a mouse button and lets it go
//   void turnWheel();
//   void settle(); // returns when everything pressed so far has been reported
template <typename Backend> class KeyTapContract : public testing::Test {
protected:
    Backend backend;

    std::optional<Subscription> start()
    {
        return backend.tap().start([this](const KeyPress& press) {
            const std::scoped_lock lock(mutex);
            reported.push_back(press);
        });
    }

    std::vector<KeyPress> pressesSoFar()
    {
        backend.settle();
        const std::scoped_lock lock(mutex);
        return reported;
    }

    static constexpr KeyCode a = 0;
    static constexpr KeyCode v = 9;
    static constexpr KeyCode f5 = 96;

private:
    std::mutex mutex;
    std::vector<KeyPress> reported;
};

TYPED_TEST_SUITE_P(KeyTapContract);

TYPED_TEST_P(KeyTapContract, ReportsKeysWithTheirModifiersInTheirOrder)
{
    const std::vector<KeyPress> presses{
        {this->a, 0},
        {this->v, eventFlag::command},
        {this->v, eventFlag::command | eventFlag::shift},
        {this->f5, 0},
        {this->v, eventFlag::command | eventFlag::option},
        {this->v, eventFlag::control},
        {this->v, 0},
        {this->v, eventFlag::command}};
    const auto running = this->start();
    ASSERT_TRUE(running);
    for (const KeyPress& press : presses)
        this->backend.press(press.keyCode, press.flags);

    // Modifiers are keys, too; those presses are of no interest here.
    std::vector<KeyPress> keys = this->pressesSoFar();
    std::erase_if(keys, [](const KeyPress& key) { return key.keyCode >= 54 && key.keyCode <= 62; });
    EXPECT_EQ(keys, presses);
}

TYPED_TEST_P(KeyTapContract, ReportsAKeyThatRepeatsOnce)
{
    const auto running = this->start();
    this->backend.holdUntilItRepeats(this->a, 0);
    EXPECT_EQ(this->pressesSoFar(), (std::vector<KeyPress>{{this->a, 0}}));

    this->backend.press(this->a, 0);
    EXPECT_EQ(this->pressesSoFar(), (std::vector<KeyPress>{{this->a, 0}, {this->a, 0}}));
}

TYPED_TEST_P(KeyTapContract, NeverReportsWhatWePostOurselves)
{
    const auto running = this->start();
    for (int i = 0; i < 20; ++i)
        this->backend.postOurselves(this->v, eventFlag::command);
    EXPECT_EQ(this->pressesSoFar(), std::vector<KeyPress>());

    this->backend.press(this->a, 0);
    this->backend.postOurselves(this->v, eventFlag::command);
    EXPECT_EQ(this->pressesSoFar(), (std::vector<KeyPress>{{this->a, 0}}));
}

TYPED_TEST_P(KeyTapContract, ReportsNothingBeforeTheStartAndAfterTheEnd)
{
    this->backend.press(this->a, 0);
    auto running = this->start();
    running.reset();
    this->backend.press(this->a, 0);
    EXPECT_EQ(this->pressesSoFar(), std::vector<KeyPress>());
}

TYPED_TEST_P(KeyTapContract, TellsOfClicksUntilTheEndOfTheWatch)
{
    const auto running = this->start();
    std::atomic<int> clicks = 0;
    auto watch = this->backend.tap().watchClicks([&] { ++clicks; });
    this->backend.click();
    this->backend.turnWheel();
    this->backend.settle();
    EXPECT_EQ(clicks, 1);
    this->backend.click();
    this->backend.press(this->a, 0);
    EXPECT_EQ(this->pressesSoFar().size(), 1u) << "keys are reported as ever";
    EXPECT_EQ(clicks, 2);

    watch.reset();
    this->backend.click();
    this->backend.press(this->a, 0);
    EXPECT_EQ(this->pressesSoFar().size(), 2u);
    EXPECT_EQ(clicks, 2);
}

TYPED_TEST_P(KeyTapContract, StartsOnceMore)
{
    this->start().reset();
    const auto running = this->start();
    ASSERT_TRUE(running);
    this->backend.press(this->a, 0);
    EXPECT_EQ(this->pressesSoFar(), (std::vector<KeyPress>{{this->a, 0}}));
}

REGISTER_TYPED_TEST_SUITE_P(
    KeyTapContract, ReportsKeysWithTheirModifiersInTheirOrder, ReportsAKeyThatRepeatsOnce,
    NeverReportsWhatWePostOurselves, ReportsNothingBeforeTheStartAndAfterTheEnd,
    TellsOfClicksUntilTheEndOfTheWatch, StartsOnceMore);

} // namespace tallowbay::contract
