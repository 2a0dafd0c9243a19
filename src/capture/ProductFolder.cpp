#include "capture/ProductFolder.h"

#include "platform/FileSystem.h"

#include <algorithm>

namespace tallowbay {

std::filesystem::path ssOptimizeDir(const FileSystem& fileSystem)
{
    return fileSystem.homeFolder() / "Downloads/Tallowbay";
}

std::filesystem::path optimizedFolder(const FileSystem& fileSystem)
{
    return ssOptimizeDir(fileSystem) / "optimized";
}

bool isWithin(const std::filesystem::path& path, const std::filesystem::path& folder)
{
    const auto ends = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return ends.first == folder.end();
}

} // namespace tallowbay
