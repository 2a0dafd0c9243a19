#include "platform/threads/GlobalQueues.h"

#include <utility>

namespace tallowbay::threads {

void GlobalQueues::async(QualityOfService quality, Task task)
{
    auto& pool = quality == QualityOfService::userInteractive ? userInteractive : userInitiated;
    pool.async(std::move(task));
}

void GlobalQueues::end()
{
    userInteractive.end();
    userInitiated.end();
}

} // namespace tallowbay::threads
