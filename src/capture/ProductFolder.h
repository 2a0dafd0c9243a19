#pragma once

#include <filesystem>

namespace tallowbay {

class FileSystem;

// The folder in the user's home that holds everything the program makes.
std::filesystem::path ssOptimizeDir(const FileSystem&);

// The folder of the compressed copies, inside the product folder.
std::filesystem::path optimizedFolder(const FileSystem&);

} // namespace tallowbay
