#include "platform/posix/LinuxResources.h"

#include "platform/posix/Environment.h"

#include <sstream>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

bool isExecutableFile(const fs::path& path)
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)
        && ::access(path.c_str(), X_OK) == 0;
}

bool isPlainName(const std::string& name)
{
    return !name.empty() && name.find('/') == name.npos;
}

fs::path pngquantPath(const LinuxResources& resources)
{
    const auto installed = executableOnSearchPath("pngquant");
    const bool cameAlong = !resources.executable("pngquant").empty();
    return cameAlong || installed.empty() ? resources.helperFolder() / "pngquant" : installed;
}

} // namespace

LinuxResources::LinuxResources(const fs::path& programFolder, HasImage hasImage)
    : helpers(programFolder.parent_path() / "libexec" / "tallowbay")
    , imageExists(std::move(hasImage))
{
}

fs::path LinuxResources::executable(const std::string& name) const
{
    const auto path = helpers / name;
    return isPlainName(name) && isExecutableFile(path) ? path : fs::path();
}

fs::path runningProgramFolder()
{
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path();
}

fs::path executableOnSearchPath(const std::string& name)
{
    std::istringstream folders(environmentText("PATH").value_or("/usr/local/bin:/usr/bin:/bin"));
    for (std::string folder; std::getline(folders, folder, ':');) {
        const auto candidate = fs::path(folder) / name;
        if (candidate.is_absolute() && isExecutableFile(candidate))
            return candidate;
    }
    return {};
}

ToolPaths linuxToolPaths(const LinuxResources& resources)
{
    const auto& helpers = resources.helperFolder();
    return {
        .pngquant = pngquantPath(resources),
        .cjpeg = helpers / "cjpeg",
        .sips = helpers / "sips",
        .defaults = helpers / "defaults",
        .screencapture = helpers / "screencapture",
    };
}

} // namespace tallowbay::posix
