#include "platform/qt/TerminationSignals.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <csignal>
#include <optional>

namespace tallowbay::qt {
namespace {

class TerminationSignalsTest : public testing::Test {
protected:
    // Whoever runs the tests may have set some to be ignored.
    TerminationSignalsTest() { setToDefault(); }
    ~TerminationSignalsTest() override
    {
        caught.reset();
        setToDefault();
    }

    static void setToDefault()
    {
        for (int signal : {SIGTERM, SIGINT, SIGHUP})
            std::signal(signal, SIG_DFL);
    }

    void start()
    {
        caught.emplace([this] { ++requests; });
    }

    // How many requests to end a signal makes. The main queue has a turn with it before this
    // returns: the signal runs inside raise(), and what it writes is there at once.
    int requestsAfter(int signal)
    {
        const int before = requests;
        std::raise(signal);
        QCoreApplication::processEvents();
        return requests - before;
    }

    static bool isIgnored(int signal) { return handlerOf(signal) == SIG_IGN; }
    static void (*handlerOf(int signal))(int)
    {
        struct sigaction current { };
        sigaction(signal, nullptr, &current);
        return current.sa_handler;
    }

    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    std::optional<TerminationSignals> caught;
    int requests = 0;
};

TEST_F(TerminationSignalsTest, BringsEachOfThemToTheMainQueue)
{
    start();
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        EXPECT_EQ(requestsAfter(signal), 1) << signal;
}

TEST_F(TerminationSignalsTest, LeavesThemToTheSystemAfterItsEnd)
{
    start();
    caught.reset();
    for (int signal : {SIGTERM, SIGINT, SIGHUP})
        EXPECT_EQ(handlerOf(signal), SIG_DFL) << signal;
}

// A program that nohup had started ended with its terminal all the same.
TEST_F(TerminationSignalsTest, GoesOnIgnoringWhatWasIgnored)
{
    std::signal(SIGHUP, SIG_IGN);
    start();
    EXPECT_EQ(requestsAfter(SIGHUP), 0);
    EXPECT_EQ(requestsAfter(SIGTERM), 1);
    EXPECT_EQ(requestsAfter(SIGINT), 1);
    caught.reset();
    EXPECT_TRUE(isIgnored(SIGHUP));
    EXPECT_FALSE(isIgnored(SIGTERM));
}

} // namespace
} // namespace tallowbay::qt
