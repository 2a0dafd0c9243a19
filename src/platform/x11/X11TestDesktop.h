#pragma once

#include "desktop/support/Wait.h"
#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"
#include "platform/x11/X11Session.h"
#include "support/LoopDispatch.h"

#include <future>
#include <stdexcept>
#include <string>
#include <vector>

namespace tallowbay::x11 {

// A display of its own with our session on it; the test's thread is the main queue.
class X11TestDesktop {
public:
    explicit X11TestDesktop(
        std::unique_ptr<test::XServer> server = std::make_unique<test::XServer>())
        : running(std::move(server))
    {
    }

private:
    std::unique_ptr<test::XServer> running;

public:
    test::XServer& server = *running;
    test::LoopDispatch dispatch;
    int lostCount = 0;
    std::unique_ptr<X11Session> session = connect();

    // Runs the main queue until the condition holds; false if it never does.
    bool run(const std::function<bool()>& condition)
    {
        return dispatch.runUntil(condition, std::chrono::seconds(20));
    }

    // Handles all that the server has sent so far.
    void settle()
    {
        session->serverTime();
        bool done = false;
        dispatch.mainAsync([&done] { done = true; });
        run([&done] { return done; });
    }

    // Does something that waits for us, on another thread, while the main queue runs here.
    template <typename Work> auto beside(Work work)
    {
        auto result = std::async(std::launch::async, work);
        const auto finished = [&] {
            return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        };
        while (!finished())
            dispatch.runUntil(finished, std::chrono::seconds(1));
        return result.get();
    }

    // What a program of the desktop writes, while the main queue runs.
    test::Finished runProgram(
        const std::vector<std::string>& command, const std::string& input = {})
    {
        const auto child = server.start(command, input);
        run([&] { return !child->running(); });
        return {child->wait(std::chrono::milliseconds(0)), child->output(), child->errors()};
    }

private:
    std::unique_ptr<X11Session> connect()
    {
        auto created = X11Session::create(
            dispatch, [this] { ++lostCount; }, server.display());
        if (!created.session)
            throw std::runtime_error(created.problem);
        return std::move(created.session);
    }
};

} // namespace tallowbay::x11
