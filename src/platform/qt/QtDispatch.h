#pragma once

#include "platform/qt/MainQueue.h"
#include "platform/threads/GlobalQueues.h"

namespace tallowbay::qt {

// The dispatch of a Qt program: the thread that made it, and runs Qt's event loop, is the main
// queue.
//
// Destroying it waits for the background tasks that are running and drops everything else; its
// serial queues must be gone by then.
class QtDispatch final : public Dispatch {
public:
    void mainAsync(Task) override;
    void mainAfter(std::chrono::milliseconds delay, Task) override;
    Subscription repeatEvery(std::chrono::milliseconds interval, Task) override;
    void globalAsync(QualityOfService, Task) override;
    bool waitForBackground(
        const std::function<bool()>& condition, std::chrono::milliseconds limit) override;
    std::unique_ptr<SerialQueue> makeSerialQueue(std::string_view label) override;

    // Waits for the background tasks that are running; from now on none is run.
    void finishBackgroundWork() { globalQueues.end(); }

private:
    MainQueue mainQueue;

    // Last, so that they end first: their tasks post to the main queue.
    threads::GlobalQueues globalQueues;
};

} // namespace tallowbay::qt
