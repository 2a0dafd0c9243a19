#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace tallowbay {

// Stops the process: the program itself is wrong, and going on could destroy the user's work.
// Thread: any.
[[noreturn]] inline void fatalError(const char* what)
{
    std::fprintf(stderr, "fatal error: %s\n", what);
    std::abort();
}

// The element at an index that must be valid; anything else stops the process.
template <typename List> auto& checkedAt(List& list, std::size_t index)
{
    if (index >= list.size())
        fatalError("index out of range");
    return list[index];
}

} // namespace tallowbay
