#pragma once

#include "base/Lifetime.h"
#include "platform/Application.h"
#include "platform/Dispatch.h"

#include <functional>

namespace tallowbay::headless {

// A main loop that is whatever the test runs on the dispatch.
class HeadlessApplication final : public Application {
public:
    explicit HeadlessApplication(Dispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    void terminate() override
    {
        dispatch.mainAsync(lifetime.guard([this] { end(); }));
    }

    // Whether the main loop has ended.
    bool ended() const { return hasEnded; }

    std::function<void()> shutdown; // optional: what the program does when its main loop has ended

private:
    void end()
    {
        if (!std::exchange(hasEnded, true) && shutdown)
            shutdown();
    }

    Dispatch& dispatch;
    bool hasEnded = false;
    Lifetime lifetime;
};

} // namespace tallowbay::headless
