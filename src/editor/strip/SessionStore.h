#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace tallowbay {

class Console;
class FileSystem;

// Keeps the strip of screenshots across restarts, in "session.json" in the product folder: which
// screenshots it showed, in which order, and where the dividers stood.
//
// Stateless. Thread: main queue; a save is synchronous and small.
namespace SessionStore {

// One place of the strip, leftmost first.
struct Item {
    std::optional<std::filesystem::path> path; // of a screenshot; empty for a divider
    bool checked = false; // means nothing for a divider
    bool operator==(const Item&) const = default;
};

// Nothing larger is read, or written: ten thousand screenshots need half of it.
inline constexpr std::size_t largestFile = 2u << 20;

std::filesystem::path file(const FileSystem&);

// Replaces what was saved; the file is never left half written. Of what would make it too large to
// be read again, the oldest screenshots are left out: those of the rightmost batch first, and of a
// batch the leftmost. A failure is told in one line on the console, and what was saved before
// stays.
void save(FileSystem&, Console&, const std::vector<Item>&);

// Empty optional if there is no file, or none that can be understood as a whole; the file stays as
// it is. Time and memory are bounded whatever it holds.
std::optional<std::vector<Item>> load(const FileSystem&);

// Deletes the file; nobody hears of a failure.
void clear(FileSystem&);

} // namespace SessionStore

} // namespace tallowbay
