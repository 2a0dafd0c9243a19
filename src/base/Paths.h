#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

namespace tallowbay {

// Whether the path is the folder itself or lies anywhere below it, by their names alone.
inline bool isWithin(const std::filesystem::path& path, const std::filesystem::path& folder)
{
    return std::ranges::mismatch(folder, path).in1 == folder.end();
}

// As people write it: with "~" for the home folder.
inline std::string pathForPeople(
    const std::filesystem::path& path, const std::filesystem::path& home)
{
    const auto relative = path.lexically_relative(home);
    if (relative == ".")
        return "~";
    const bool below = !relative.empty() && *relative.begin() != "..";
    return below ? "~/" + relative.native() : path.native();
}

} // namespace tallowbay
