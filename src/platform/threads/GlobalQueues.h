#pragma once

#include "platform/threads/WorkerPool.h"

namespace tallowbay::threads {

// The background queues of the process: a pool of threads for each quality of service.
//
// Thread: any. Destroying them is destroying a WorkerPool each.
class GlobalQueues {
public:
    void async(QualityOfService, Task);

    // Waits for the tasks that are running; from now on nothing runs.
    void end();

private:
    WorkerPool userInteractive{"interactive", WorkerPool::defaultThreadLimit()};
    WorkerPool userInitiated{"initiated", WorkerPool::defaultThreadLimit()};
};

} // namespace tallowbay::threads
