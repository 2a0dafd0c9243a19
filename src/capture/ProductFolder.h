#pragma once

#include <filesystem>

namespace tallowbay {

class FileSystem;

// The folder in the user's home that holds everything the program makes.
std::filesystem::path ssOptimizeDir(const FileSystem&);

// The folder of the compressed copies, inside the product folder.
std::filesystem::path optimizedFolder(const FileSystem&);

// Whether the path is the folder itself or lies below it, by its name alone.
bool isWithin(const std::filesystem::path&, const std::filesystem::path& folder);

} // namespace tallowbay
