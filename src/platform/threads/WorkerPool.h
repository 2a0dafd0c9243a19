#pragma once

#include "platform/Dispatch.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace tallowbay::threads {

// Runs tasks on a bounded number of threads, each started when there is work for it.
//
// Thread: async() from any thread, also from a task of the pool. Destroying the pool ends it; that
// may not happen inside a task of the pool.
class WorkerPool {
public:
    // The name is what debuggers show of the threads; they show fifteen bytes of it.
    WorkerPool(std::string_view name, std::size_t threadLimit);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // Tasks start in the order they were given.
    void async(Task);

    // Waits for the tasks that are running, and drops those that have not started and all that come
    // later. Not inside a task of the pool.
    void end();

    // One thread for each core, two at least: a task that waits for a child process must not hold
    // up the next one.
    static std::size_t defaultThreadLimit();

private:
    void work();
    Task nextTask();

    const std::string name;
    const std::size_t threadLimit;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Task> waiting;
    std::vector<std::thread> threads;
    std::size_t idleThreads = 0;
    bool ending = false;
};

} // namespace tallowbay::threads
