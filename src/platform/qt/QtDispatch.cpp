#include "platform/qt/QtDispatch.h"

#include "platform/threads/ThreadSerialQueue.h"

namespace tallowbay::qt {

void QtDispatch::mainAsync(Task task)
{
    mainQueue.async(std::move(task));
}

void QtDispatch::mainAfter(std::chrono::milliseconds delay, Task task)
{
    mainQueue.after(delay, std::move(task));
}

Subscription QtDispatch::repeatEvery(std::chrono::milliseconds interval, Task task)
{
    return mainQueue.repeatEvery(interval, std::move(task));
}

void QtDispatch::globalAsync(QualityOfService quality, Task task)
{
    globalQueues.async(quality, std::move(task));
}

bool QtDispatch::waitForBackground(
    const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    return globalQueues.waitUntil(condition, limit);
}

std::unique_ptr<SerialQueue> QtDispatch::makeSerialQueue(std::string_view label)
{
    return std::make_unique<threads::ThreadSerialQueue>(label);
}

} // namespace tallowbay::qt
