#pragma once

#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace tallowbay::posix {

// Thread: any, for all of these.

// All bytes of a regular file; empty optional if there is none that can be read, or if it is longer
// than the limit.
std::optional<std::string> readFile(
    const std::filesystem::path&, std::size_t limit = std::numeric_limits<std::size_t>::max());

// Appends all that comes until the end. False if an error came before.
bool readAll(int descriptor, std::string& bytes);

// The file has the new bytes (true), or on failure still the old ones: they are written beside it,
// synced to the disk, then put in its place. An existing file keeps its permissions, a symbolic
// link stays and its target is replaced. Nothing is left behind on failure.
bool replaceFile(const std::filesystem::path&, std::string_view bytes);

// With the folders above. True if the folder is there afterwards.
bool makeFolders(const std::filesystem::path&);

} // namespace tallowbay::posix
