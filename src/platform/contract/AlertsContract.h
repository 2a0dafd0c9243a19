#pragma once

#include "platform/Alerts.h"

#include <gmock/gmock.h>

#include <memory>
#include <thread>
#include <vector>

namespace tallowbay::contract {

// All alerts keep their header's promises. A backend offers:
//   Alerts& alerts();
//   std::size_t openCount();      alerts that can be seen
//   void press(std::size_t button); in the alert that was shown last of those that are open
//   void closeWindow();           of that alert
//   void settle();                runs the main queue until nothing more comes of it
template <typename Backend> class AlertsContract : public testing::Test {
protected:
    Subscription ask(const std::vector<std::string>& buttons = {"Here", "There", "Nowhere"})
    {
        return alerts.showWarning(
            {"Where to?", "It has to go somewhere.", buttons},
            [this](std::size_t button) { answers.push_back(button); });
    }

    Backend backend;
    Alerts& alerts = backend.alerts();
    std::vector<std::size_t> answers;
};

TYPED_TEST_SUITE_P(AlertsContract);

TYPED_TEST_P(AlertsContract, StaysOpenUnansweredWhileTheMainQueueGoesOn)
{
    const auto token = this->ask();
    this->backend.settle();
    EXPECT_EQ(this->backend.openCount(), 1u);
    EXPECT_THAT(this->answers, testing::IsEmpty());
}

TYPED_TEST_P(AlertsContract, AnswersWithTheButtonThatIsPressedAndIsGone)
{
    for (const std::size_t button : {0, 1, 2}) {
        const auto token = this->ask();
        this->backend.press(button);
        this->backend.settle();
        EXPECT_EQ(this->backend.openCount(), 0u);
    }
    EXPECT_THAT(this->answers, testing::ElementsAre(0, 1, 2));
}

TYPED_TEST_P(AlertsContract, TakesClosingForTheLastButton)
{
    for (const auto& buttons : std::vector<std::vector<std::string>>{
             {"Here", "There", "Nowhere"}, {"Change", "Leave"}, {"OK"}}) {
        const auto token = this->ask(buttons);
        this->backend.closeWindow();
        this->backend.settle();
        EXPECT_EQ(this->backend.openCount(), 0u);
    }
    EXPECT_THAT(this->answers, testing::ElementsAre(2, 1, 0));
}

TYPED_TEST_P(AlertsContract, AnswersOnTheMainQueue)
{
    std::thread::id answeredOn;
    const auto token = this->alerts.showWarning(
        {"Go?", {}, {"Yes"}}, [&](std::size_t) { answeredOn = std::this_thread::get_id(); });
    this->backend.press(0);
    this->backend.settle();
    EXPECT_EQ(answeredOn, std::this_thread::get_id());
}

TYPED_TEST_P(AlertsContract, GoesWithoutAnAnswerWhenItsTokenEnds)
{
    auto token = this->ask();
    token.reset();
    this->backend.settle();
    EXPECT_EQ(this->backend.openCount(), 0u);
    EXPECT_THAT(this->answers, testing::IsEmpty());
}

TYPED_TEST_P(AlertsContract, LetsTheTokenEndAfterTheAnswer)
{
    auto first = this->ask();
    this->backend.press(1);
    this->backend.settle();
    const auto second = this->ask();
    first.reset();
    this->backend.settle();
    EXPECT_EQ(this->backend.openCount(), 1u) << "another alert's token took it away";
    this->backend.press(2);
    EXPECT_THAT(this->answers, testing::ElementsAre(1, 2));
}

TYPED_TEST_P(AlertsContract, LetsTheTokenEndInsideTheAnswer)
{
    Subscription token;
    const auto held = std::make_shared<std::size_t>(5);
    std::size_t seen = 0;
    token = this->alerts.showWarning(
        {"Go?", {}, {"Yes", "No"}}, [&token, &seen, held](std::size_t button) {
            token.reset();
            seen = *held + button;
        });
    this->backend.press(1);
    this->backend.settle();
    EXPECT_EQ(seen, 6u);
    EXPECT_EQ(held.use_count(), 1) << "the answer is kept after its end";
    EXPECT_EQ(this->backend.openCount(), 0u);
}

TYPED_TEST_P(AlertsContract, KeepsNothingOfAnAnswerThatWasGiven)
{
    const auto held = std::make_shared<int>();
    const auto token = this->alerts.showWarning({"Go?", {}, {"Yes"}}, [held](std::size_t) {});
    EXPECT_EQ(held.use_count(), 2);
    this->backend.press(0);
    this->backend.settle();
    EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST_P(AlertsContract, MayShowTheNextOneInTheAnswer)
{
    Subscription next;
    const auto token =
        this->alerts.showWarning({"Go?", {}, {"Yes"}}, [&](std::size_t) { next = this->ask(); });
    this->backend.press(0);
    this->backend.settle();
    EXPECT_EQ(this->backend.openCount(), 1u);
    this->backend.press(2);
    EXPECT_THAT(this->answers, testing::ElementsAre(2));
}

TYPED_TEST_P(AlertsContract, AnswersEachOfSeveralByItself)
{
    std::vector<std::size_t> first;
    const auto firstToken = this->alerts.showWarning(
        {"First?", {}, {"Yes", "No"}}, [&](std::size_t button) { first.push_back(button); });
    const auto secondToken = this->ask();
    EXPECT_EQ(this->backend.openCount(), 2u);
    this->backend.press(2);
    this->backend.settle();
    EXPECT_EQ(this->backend.openCount(), 1u);
    EXPECT_THAT(first, testing::IsEmpty());
    this->backend.closeWindow();
    EXPECT_THAT(first, testing::ElementsAre(1));
    EXPECT_THAT(this->answers, testing::ElementsAre(2));
}

TYPED_TEST_P(AlertsContract, LeavesTheOthersWhenATokenEnds)
{
    auto first = this->ask();
    auto second = this->ask();
    second.reset();
    this->backend.settle();
    EXPECT_EQ(this->backend.openCount(), 1u);
    this->backend.press(0);
    EXPECT_THAT(this->answers, testing::ElementsAre(0));
}

REGISTER_TYPED_TEST_SUITE_P(
    AlertsContract, StaysOpenUnansweredWhileTheMainQueueGoesOn,
    AnswersWithTheButtonThatIsPressedAndIsGone, TakesClosingForTheLastButton, AnswersOnTheMainQueue,
    GoesWithoutAnAnswerWhenItsTokenEnds, LetsTheTokenEndAfterTheAnswer,
    LetsTheTokenEndInsideTheAnswer, KeepsNothingOfAnAnswerThatWasGiven,
    MayShowTheNextOneInTheAnswer, AnswersEachOfSeveralByItself, LeavesTheOthersWhenATokenEnds);

} // namespace tallowbay::contract
