#include "platform/threads/ThreadSerialQueue.h"

#include <utility>

namespace tallowbay::threads {

namespace {

// Labels are reverse domain names: the last part is the one that tells queues apart.
std::string_view lastPart(std::string_view label)
{
    const auto dot = label.rfind('.');
    return dot == label.npos ? label : label.substr(dot + 1);
}

} // namespace

ThreadSerialQueue::ThreadSerialQueue(std::string_view label)
    : pool(lastPart(label), 1)
{
}

void ThreadSerialQueue::async(Task task)
{
    pool.async(std::move(task));
}

} // namespace tallowbay::threads
