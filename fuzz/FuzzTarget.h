#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// The entry of libFuzzer, which every target has. A finding stops the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tallowbay::fuzz {

// Inputs that are worth changing.
std::vector<std::string> seeds();

} // namespace tallowbay::fuzz
