#pragma once

#include <chrono>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tallowbay::x11 {

// Asks the owner of the clipboard, which may be any program in any state, for the first of these
// forms that it gives. Empty if it gives none of them, or not within the limit.
//
// Uses a connection of its own, so that an owner that stalls or answers late leaves no trace.
//
// Thread: any; blocks for the limit at most.
std::optional<std::string> readClipboard(
    const std::string& display, std::span<const std::string_view> formNames,
    std::chrono::milliseconds limit);

} // namespace tallowbay::x11
