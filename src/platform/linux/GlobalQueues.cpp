#include "platform/linux/GlobalQueues.h"

#include <utility>

namespace tallowbay::linux_desktop {

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

} // namespace tallowbay::linux_desktop
