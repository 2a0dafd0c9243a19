#pragma once

#include <atomic>
#include <cstddef>

namespace tallowbay::posix {

// How many folders this program may watch at once, counted over all of its trees. Thread: any.
class WatchBudget {
public:
    explicit WatchBudget(std::size_t most)
        : most(most)
    {
    }

    // False if nothing is left.
    bool take()
    {
        auto now = taken.load();
        while (now < most) {
            if (taken.compare_exchange_weak(now, now + 1))
                return true;
        }
        return false;
    }
    void takeAnyway() { ++taken; }
    void giveBack(std::size_t count) { taken -= count; }

private:
    const std::size_t most;
    std::atomic<std::size_t> taken = 0;
};

} // namespace tallowbay::posix
