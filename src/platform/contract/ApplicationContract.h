#pragma once

#include "platform/Application.h"
#include "platform/Dispatch.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tallowbay::contract {

// Every application keeps its header's promises. A backend offers:
//   Application& application();
//   Dispatch& dispatch();
//   bool run(shutdown);   the main loop, then the shutdown; false if the loop ended for another
//                         reason than terminate(), or never would
template <typename Backend> class ApplicationContract : public testing::Test {
protected:
    bool run()
    {
        return backend.run([this] { order.emplace_back("shutdown"); });
    }
    void terminateOnMainQueue()
    {
        backend.dispatch().mainAsync([this] {
            application.terminate();
            order.emplace_back("after the call");
        });
    }

    Backend backend;
    Application& application = backend.application();
    std::vector<std::string> order;
};

TYPED_TEST_SUITE_P(ApplicationContract);

TYPED_TEST_P(ApplicationContract, EndsTheLoopAfterTheCallAndThenShutsDown)
{
    this->terminateOnMainQueue();
    EXPECT_TRUE(this->run());
    EXPECT_THAT(this->order, testing::ElementsAre("after the call", "shutdown"));
}

TYPED_TEST_P(ApplicationContract, RunsUntilItIsAskedToEnd)
{
    using namespace std::chrono_literals;
    this->backend.dispatch().mainAfter(20ms, [this] {
        this->order.emplace_back("later");
        this->application.terminate();
    });
    EXPECT_TRUE(this->run());
    EXPECT_THAT(this->order, testing::ElementsAre("later", "shutdown"));
}

TYPED_TEST_P(ApplicationContract, ShutsDownOnceWhenAskedTwice)
{
    this->terminateOnMainQueue();
    this->terminateOnMainQueue();
    this->backend.dispatch().mainAsync([this] { this->application.terminate(); });
    EXPECT_TRUE(this->run());
    EXPECT_EQ(std::ranges::count(this->order, "shutdown"), 1);
    EXPECT_EQ(this->order.back(), "shutdown");
}

TYPED_TEST_P(ApplicationContract, EndsTheLoopAtOnceThatIsEndedBeforeItBegins)
{
    this->application.terminate();
    EXPECT_THAT(this->order, testing::IsEmpty());
    EXPECT_TRUE(this->run());
    EXPECT_THAT(this->order, testing::ElementsAre("shutdown"));
}

TYPED_TEST_P(ApplicationContract, MayBeAskedAgainByTheShutdown)
{
    this->terminateOnMainQueue();
    EXPECT_TRUE(this->backend.run([this] {
        this->application.terminate();
        this->order.emplace_back("shutdown");
    }));
    EXPECT_THAT(this->order, testing::ElementsAre("after the call", "shutdown"));
}

REGISTER_TYPED_TEST_SUITE_P(
    ApplicationContract, EndsTheLoopAfterTheCallAndThenShutsDown, RunsUntilItIsAskedToEnd,
    ShutsDownOnceWhenAskedTwice, EndsTheLoopAtOnceThatIsEndedBeforeItBegins,
    MayBeAskedAgainByTheShutdown);

} // namespace tallowbay::contract
