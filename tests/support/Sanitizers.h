#pragma once

namespace tallowbay::test {

// Whether a sanitizer watches the program. What computes much takes ten times as long then; the
// program as it is shipped takes all the steps, a watched one takes some of every kind.
#if defined(__has_feature)
constexpr bool isSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

} // namespace tallowbay::test
