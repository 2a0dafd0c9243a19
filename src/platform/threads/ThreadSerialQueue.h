#pragma once

#include "platform/threads/WorkerPool.h"

#include <string_view>

namespace tallowbay::threads {

// A serial queue with a thread of its own, started with the first task.
class ThreadSerialQueue : public SerialQueue {
public:
    explicit ThreadSerialQueue(std::string_view label);
    void async(Task) override;

private:
    WorkerPool pool;
};

} // namespace tallowbay::threads
