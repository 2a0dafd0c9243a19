#include "capture/ProductFolder.h"

#include "platform/FileSystem.h"

namespace tallowbay {

std::filesystem::path ssOptimizeDir(const FileSystem& fileSystem)
{
    return fileSystem.homeFolder() / "Downloads/Tallowbay";
}

std::filesystem::path optimizedFolder(const FileSystem& fileSystem)
{
    return ssOptimizeDir(fileSystem) / "optimized";
}

} // namespace tallowbay
