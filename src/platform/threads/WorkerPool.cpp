#include "platform/threads/WorkerPool.h"

#include <algorithm>
#include <utility>

#include <pthread.h>

namespace tallowbay::threads {

namespace {

constexpr std::size_t longestThreadName = 15;

} // namespace

WorkerPool::WorkerPool(std::string_view name, std::size_t threadLimit)
    : name(name.substr(0, longestThreadName))
    , threadLimit(std::max<std::size_t>(threadLimit, 1))
{
}

WorkerPool::~WorkerPool()
{
    end();
}

void WorkerPool::end()
{
    // What is dropped may run code of its owner when it is destroyed: not under the lock.
    std::deque<Task> dropped;
    {
        const std::scoped_lock lock(mutex);
        ending = true;
        dropped.swap(waiting);
    }
    dropped.clear();
    changed.notify_all();
    for (auto& thread : threads) {
        if (thread.joinable())
            thread.join();
    }
}

void WorkerPool::async(Task task)
{
    const std::scoped_lock lock(mutex);
    if (ending)
        return;
    waiting.push_back(std::move(task));
    if (waiting.size() > idleThreads && threads.size() < threadLimit)
        threads.emplace_back([this] { work(); });
    changed.notify_one();
}

std::size_t WorkerPool::defaultThreadLimit()
{
    return std::max<std::size_t>(std::thread::hardware_concurrency(), 2);
}

void WorkerPool::work()
{
    pthread_setname_np(pthread_self(), name.c_str());
    while (auto task = nextTask())
        task();
}

// Blocks for it; empty when the pool ends.
Task WorkerPool::nextTask()
{
    std::unique_lock lock(mutex);
    ++idleThreads;
    changed.wait(lock, [this] { return ending || !waiting.empty(); });
    --idleThreads;
    if (ending)
        return nullptr;
    auto task = std::move(waiting.front());
    waiting.pop_front();
    return task;
}

} // namespace tallowbay::threads
