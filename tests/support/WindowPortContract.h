#pragma once

#include "platform/Clock.h"
#include "ui/WindowPort.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay::contract {

// Every window keeps its port's promises. A backend offers:
//   std::unique_ptr<WindowPort> makeWindow();
//   std::optional<double> shownAlpha();   of the only window; empty if it is not on the screen
//   std::string keyboardOwner();          who gets the keys that are typed
//   MonotonicTime now();
//   bool runUntil(condition);             runs the main queue until it holds; false after long
//   void pass(std::chrono::milliseconds); runs the main queue for that long
template <typename Backend> class WindowPortContract : public testing::Test {
protected:
    bool becomes(double alpha)
    {
        return backend.runUntil([=, this] { return backend.shownAlpha() == alpha; });
    }
    void show(double alpha = 1)
    {
        window->setAlpha(alpha);
        window->orderFront();
        ASSERT_TRUE(becomes(alpha));
    }

    Backend backend;
    std::unique_ptr<WindowPort> window = backend.makeWindow();
    std::vector<int> completed;
};

TYPED_TEST_SUITE_P(WindowPortContract);

TYPED_TEST_P(WindowPortContract, IsNotShownUntilItIsOrderedFront)
{
    using namespace std::chrono_literals;
    this->window->setAlpha(1);
    this->backend.pass(20ms);
    EXPECT_EQ(this->backend.shownAlpha(), std::nullopt);
    this->window->orderFront();
    EXPECT_TRUE(this->becomes(1));
}

TYPED_TEST_P(WindowPortContract, HasTheAlphaThatItWasGivenLast)
{
    this->show(0);
    for (const double alpha : {1.0, 0.25, 0.0, 0.75}) {
        this->window->setAlpha(alpha);
        EXPECT_TRUE(this->becomes(alpha)) << alpha;
    }
}

TYPED_TEST_P(WindowPortContract, TakesNoKeyboardWhenItComesToTheFront)
{
    using namespace std::chrono_literals;
    const auto owner = this->backend.keyboardOwner();
    this->show();
    this->window->orderFront();
    this->backend.pass(50ms);
    EXPECT_EQ(this->backend.keyboardOwner(), owner);
}

TYPED_TEST_P(WindowPortContract, CompletesAnAnimationOnceWhenItsDurationIsOver)
{
    using namespace std::chrono_literals;
    this->show(0);
    const auto start = this->backend.now();
    this->window->animateAlpha(1, 60ms, [this] { this->completed.push_back(1); });
    EXPECT_TRUE(this->completed.empty());
    EXPECT_TRUE(this->backend.runUntil([this] { return !this->completed.empty(); }));
    EXPECT_GE(this->backend.now() - start, 60ms);
    EXPECT_EQ(this->backend.shownAlpha(), 1);
    this->backend.pass(100ms);
    EXPECT_EQ(this->completed.size(), 1u);
    EXPECT_EQ(this->backend.shownAlpha(), 1);
}

TYPED_TEST_P(WindowPortContract, CompletesAnAnimationWithoutDurationAfterTheCall)
{
    using namespace std::chrono_literals;
    this->show(0);
    this->window->animateAlpha(1, 0ms, [this] { this->completed.push_back(1); });
    EXPECT_TRUE(this->completed.empty());
    EXPECT_TRUE(this->backend.runUntil([this] { return !this->completed.empty(); }));
    EXPECT_EQ(this->backend.shownAlpha(), 1);
}

TYPED_TEST_P(WindowPortContract, AnimatesWithoutACompletion)
{
    using namespace std::chrono_literals;
    this->show(0);
    this->window->animateAlpha(1, 10ms, nullptr);
    EXPECT_TRUE(this->becomes(1));
}

// A toast that was asked to fade out, and in again, used to vanish when the first was over.
TYPED_TEST_P(WindowPortContract, LetsANewerAnimationTakeOver)
{
    using namespace std::chrono_literals;
    this->show(1);
    this->window->animateAlpha(0, 60ms, [this] { this->completed.push_back(1); });
    this->window->animateAlpha(1, 10ms, [this] { this->completed.push_back(2); });
    EXPECT_TRUE(this->backend.runUntil([this] { return this->completed.size() == 2; }));
    this->backend.pass(20ms);
    EXPECT_THAT(this->completed, testing::ElementsAre(2, 1));
    EXPECT_EQ(this->backend.shownAlpha(), 1);
}

TYPED_TEST_P(WindowPortContract, ForgetsTheCompletionWhenItIsDestroyedBefore)
{
    using namespace std::chrono_literals;
    this->show();
    const auto held = std::make_shared<int>();
    this->window->animateAlpha(0, 10ms, [this, held] { this->completed.push_back(1); });
    this->window.reset();
    this->backend.pass(50ms);
    EXPECT_TRUE(this->completed.empty());
    EXPECT_EQ(held.use_count(), 1) << "the completion is kept after its end";
}

TYPED_TEST_P(WindowPortContract, MayBeDestroyedByItsOwnCompletion)
{
    using namespace std::chrono_literals;
    this->show();
    const auto held = std::make_shared<int>(7);
    this->window->animateAlpha(0, 10ms, [this, held] {
        this->window.reset();
        this->completed.push_back(*held);
    });
    EXPECT_TRUE(this->backend.runUntil([this] { return !this->completed.empty(); }));
    this->backend.pass(20ms);
    EXPECT_THAT(this->completed, testing::ElementsAre(7));
    EXPECT_EQ(this->backend.shownAlpha(), std::nullopt);
}

TYPED_TEST_P(WindowPortContract, LeavesTheScreenWhenItCloses)
{
    using namespace std::chrono_literals;
    this->show();
    this->window->animateAlpha(0.5, 10ms, [this] { this->completed.push_back(1); });
    this->window->close();
    EXPECT_TRUE(this->backend.runUntil([this] { return !this->backend.shownAlpha(); }));
    EXPECT_TRUE(this->backend.runUntil([this] { return !this->completed.empty(); }))
        << "closing is not destroying";
}

TYPED_TEST_P(WindowPortContract, LeavesTheScreenWhenItIsDestroyed)
{
    this->show();
    this->window.reset();
    EXPECT_TRUE(this->backend.runUntil([this] { return !this->backend.shownAlpha(); }));
}

REGISTER_TYPED_TEST_SUITE_P(
    WindowPortContract, IsNotShownUntilItIsOrderedFront, HasTheAlphaThatItWasGivenLast,
    TakesNoKeyboardWhenItComesToTheFront, CompletesAnAnimationOnceWhenItsDurationIsOver,
    CompletesAnAnimationWithoutDurationAfterTheCall, AnimatesWithoutACompletion,
    LetsANewerAnimationTakeOver, ForgetsTheCompletionWhenItIsDestroyedBefore,
    MayBeDestroyedByItsOwnCompletion, LeavesTheScreenWhenItCloses,
    LeavesTheScreenWhenItIsDestroyed);

} // namespace tallowbay::contract
