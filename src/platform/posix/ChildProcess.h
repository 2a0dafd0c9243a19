#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tallowbay::posix {

// Thread: any, for all of these.

// Starts a program with no signal blocked, none ignored but those of a terminal that we were
// started with as ignored, and with none of our descriptors: its input is empty, its error output
// goes to the null device, and so does its output unless a descriptor is named for it. Empty if it
// cannot be started. The caller waits for its end.
std::optional<pid_t> spawnChild(
    const std::filesystem::path& program, std::vector<std::string> arguments,
    std::optional<int> output = std::nullopt);

// What the program wrote to its output. Empty unless it ended with status 0 before the limit was
// over; then it is ended. Blocks until its end.
std::optional<std::string> outputOf(
    const std::filesystem::path& program, const std::vector<std::string>& arguments,
    std::chrono::milliseconds limit = std::chrono::seconds(2));

} // namespace tallowbay::posix
