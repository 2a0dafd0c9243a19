#pragma once

#include "platform/Updater.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// What came of a check.
enum class UpdateOutcome { newer, upToDate, failure };

// Every updater keeps its header's promises. A backend, whose checks last until it is told to
// answer, offers:
//   Updater& updater();
//   void endUpdater();
//   void answer(UpdateOutcome);   to those who ask, or will ask
//   bool showsResults(std::size_t count);     runs the main queue until so many results have been
//   shown in
//                                 all; false if there are more, or that never comes
//   void settle();                runs the main queue for a moment
//   int checks();                 that were begun
template <typename Backend> class UpdaterContract : public testing::Test {
protected:
    Backend backend;
    Updater& updater = backend.updater();
};

TYPED_TEST_SUITE_P(UpdaterContract);

TYPED_TEST_P(UpdaterContract, DoesNotWaitForTheResult)
{
    this->updater.checkForUpdates();
    this->backend.settle();
    EXPECT_TRUE(this->backend.showsResults(0));
    this->backend.answer(UpdateOutcome::upToDate);
    EXPECT_TRUE(this->backend.showsResults(1));
}

TYPED_TEST_P(UpdaterContract, ChecksNothingUnasked)
{
    this->backend.answer(UpdateOutcome::newer);
    this->backend.settle();
    EXPECT_EQ(this->backend.checks(), 0);
    EXPECT_TRUE(this->backend.showsResults(0));
}

TYPED_TEST_P(UpdaterContract, ShowsTheResultInEveryCase)
{
    std::size_t shown = 0;
    for (const auto outcome :
         {UpdateOutcome::newer, UpdateOutcome::upToDate, UpdateOutcome::failure}) {
        this->updater.checkForUpdates();
        this->backend.answer(outcome);
        EXPECT_TRUE(this->backend.showsResults(++shown)) << static_cast<int>(outcome);
    }
    EXPECT_EQ(this->backend.checks(), 3);
}

TYPED_TEST_P(UpdaterContract, ChangesNothingWhenAskedAgainDuringACheck)
{
    for (int i = 0; i < 3; ++i) {
        this->updater.checkForUpdates();
        this->backend.settle();
    }
    this->backend.answer(UpdateOutcome::newer);
    EXPECT_TRUE(this->backend.showsResults(1));
    this->backend.settle();
    EXPECT_TRUE(this->backend.showsResults(1));
    EXPECT_EQ(this->backend.checks(), 1);
}

TYPED_TEST_P(UpdaterContract, ShowsNothingOnceItHasGone)
{
    this->updater.checkForUpdates();
    this->backend.settle();
    this->backend.endUpdater();
    this->backend.answer(UpdateOutcome::newer);
    this->backend.settle();
    EXPECT_TRUE(this->backend.showsResults(0));
}

REGISTER_TYPED_TEST_SUITE_P(
    UpdaterContract, DoesNotWaitForTheResult, ChecksNothingUnasked, ShowsTheResultInEveryCase,
    ChangesNothingWhenAskedAgainDuringACheck, ShowsNothingOnceItHasGone);

} // namespace tallowbay::contract
