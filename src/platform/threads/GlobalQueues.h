#pragma once

#include "platform/threads/WorkerPool.h"

namespace tallowbay::threads {

// The background queues of the process: a pool of threads for each quality of service.
//
// Thread: any. Destroying them is destroying a WorkerPool each.
class GlobalQueues {
public:
    void async(QualityOfService, Task);

    // Tries the condition at once and after each task that has ended; false after the limit.
    bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit);

    // Waits for the tasks that are running; from now on nothing runs.
    void end();

private:
    std::mutex mutex;
    std::condition_variable taskEnded;

    // Last, so that they end first: their tasks tell of their end.
    WorkerPool userInteractive{"interactive", WorkerPool::defaultThreadLimit()};
    WorkerPool userInitiated{"initiated", WorkerPool::defaultThreadLimit()};
};

} // namespace tallowbay::threads
