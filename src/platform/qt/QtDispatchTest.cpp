#include "platform/qt/QtDispatch.h"

#include "platform/contract/DispatchContract.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gmock/gmock.h>

#include <thread>

using namespace std::chrono_literals;
using testing::ElementsAre;

namespace tallowbay::qt {
namespace {

// A program of Qt's with its event loop.
class QtBackend {
public:
    Dispatch& dispatch() { return queues; }
    MonotonicTime now() const { return std::chrono::steady_clock::now(); }
    void pass(std::chrono::milliseconds duration)
    {
        const auto end = now() + duration;
        while (now() < end)
            turn();
    }
    bool runUntil(const std::function<bool()>& condition)
    {
        const auto end = now() + 20s;
        while (!condition() && now() < end)
            turn();
        return condition();
    }

private:
    static void turn() { QCoreApplication::processEvents(QEventLoop::AllEvents, 10); }

    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    QtDispatch queues;
};

class QtDispatchTest : public testing::Test {
protected:
    bool runUntil(const std::function<bool()>& condition) { return backend.runUntil(condition); }

    void runPendingTasks()
    {
        bool reached = false;
        dispatch.mainAsync([&] { reached = true; });
        ASSERT_TRUE(runUntil([&] { return reached; }));
    }

    QtBackend backend;
    Dispatch& dispatch = backend.dispatch();
    std::vector<int> ran;
};

TEST_F(QtDispatchTest, LosesNoTaskOfThreadsThatGiveAtOnce)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread)
        threads.emplace_back([this] {
            for (int task = 0; task < 500; ++task)
                dispatch.mainAsync([this] { ran.push_back(0); });
        });
    for (auto& thread : threads)
        thread.join();

    EXPECT_TRUE(runUntil([this] { return ran.size() == 8 * 500; }));
}

TEST_F(QtDispatchTest, LetsTheEventLoopBreatheBetweenTasksThatGiveTasks)
{
    std::function<void()> again = [&] { dispatch.mainAsync(again); };
    dispatch.mainAsync(again);
    bool timerRan = false;
    QTimer::singleShot(0, QCoreApplication::instance(), [&] { timerRan = true; });

    EXPECT_TRUE(runUntil([&] { return timerRan; }));
}

TEST_F(QtDispatchTest, KeepsTheOrderWhenATaskRunsAnEventLoop)
{
    dispatch.mainAsync([this] {
        ran.push_back(1);
        dispatch.mainAsync([this] { ran.push_back(3); });
        EXPECT_TRUE(runUntil([this] { return ran.size() == 3; }));
    });
    dispatch.mainAsync([this] { ran.push_back(2); });

    EXPECT_TRUE(runUntil([this] { return ran.size() == 3; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST_F(QtDispatchTest, RunsADelayedTaskOfAnotherThreadOnTheMainThread)
{
    std::thread::id where;
    std::thread([&] {
        dispatch.mainAfter(1ms, [&] { where = std::this_thread::get_id(); });
    }).join();

    EXPECT_TRUE(runUntil([&] { return where != std::thread::id(); }));
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST_F(QtDispatchTest, LetsARepeatingTaskEndItself)
{
    Subscription token;
    const auto alive = std::make_shared<int>(7);
    token = dispatch.repeatEvery(1ms, [this, &token, alive] {
        token.reset();
        ran.push_back(*alive);
    });

    EXPECT_TRUE(runUntil([this] { return !ran.empty(); }));
    bool later = false;
    dispatch.mainAfter(20ms, [&] { later = true; });
    EXPECT_TRUE(runUntil([&] { return later; }));
    EXPECT_THAT(ran, ElementsAre(7));
    EXPECT_EQ(alive.use_count(), 1);
}

TEST_F(QtDispatchTest, DropsWhatHasNotRunWhenItIsDestroyed)
{
    const auto held = std::make_shared<int>();
    {
        QtDispatch ending;
        ending.mainAsync([this, held] { ran.push_back(1); });
        ending.mainAfter(1ms, [this, held] { ran.push_back(2); });
        static_cast<void>(ending.repeatEvery(1ms, [this, held] { ran.push_back(3); }));
    }

    EXPECT_EQ(held.use_count(), 1);
    runPendingTasks();
    EXPECT_TRUE(ran.empty());
}

} // namespace
} // namespace tallowbay::qt

namespace tallowbay::contract {

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, DispatchContract, qt::QtBackend);

} // namespace tallowbay::contract
