#pragma once

#include <chrono>
#include <thread>

namespace tallowbay::test {

// Whether the condition came true within the limit, which is generous: it is only ever used up by a
// test that fails.
template <typename Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(20))
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace tallowbay::test
