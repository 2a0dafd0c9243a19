#include "platform/threads/GlobalQueues.h"

#include <utility>

namespace tallowbay::threads {

void GlobalQueues::async(QualityOfService quality, Task task)
{
    auto& pool = quality == QualityOfService::userInteractive ? userInteractive : userInitiated;
    pool.async([this, task = std::move(task)] {
        task();
        const std::scoped_lock lock(mutex);
        taskEnded.notify_all();
    });
}

bool GlobalQueues::waitUntil(
    const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    std::unique_lock lock(mutex);
    return taskEnded.wait_for(lock, limit, condition);
}

void GlobalQueues::end()
{
    userInteractive.end();
    userInitiated.end();
}

} // namespace tallowbay::threads
