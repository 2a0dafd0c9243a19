#pragma once

#include <cstdint>
#include <vector>

namespace tallowbay::bench {

// The same numbers on every machine, unlike the standard library's distributions.
class Random {
public:
    explicit Random(std::uint64_t seed)
        : state(seed)
    {
    }

    // 0 to below the limit.
    int below(int limit) { return static_cast<int>(next() % static_cast<std::uint64_t>(limit)); }
    int between(int first, int last) { return first + below(last - first + 1); }
    bool oneIn(int count) { return below(count) == 0; }

    template <typename T> const T& pick(const std::vector<T>& list)
    {
        return list.at(static_cast<std::size_t>(below(static_cast<int>(list.size()))));
    }

private:
    std::uint64_t next()
    {
        std::uint64_t mixed = state += 0x9E3779B97F4A7C15u;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
        return mixed ^ (mixed >> 31);
    }

    std::uint64_t state;
};

} // namespace tallowbay::bench
