#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tallowbay::posix {

// Thread: any, for both. Paths may be relative.

// Why no file of our own can be put at that path, in words for people: what is there is no regular
// file (a symbolic link is one of these, whatever it points to), or cannot be looked at. Empty if
// one can be put there.
std::optional<std::string> obstacleAt(const std::filesystem::path&);

// Puts a new file there that only its user can read and write; a regular file that was there is
// replaced, never written to. Nothing that is there is followed or opened, also if it came there a
// moment ago. Why it failed, in words for people, or empty; then what was there still is.
std::optional<std::string> writePrivateFile(const std::filesystem::path&, std::string_view bytes);

} // namespace tallowbay::posix
