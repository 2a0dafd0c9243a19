#pragma once

#include "platform/Resources.h"
#include "platform/ToolPaths.h"

#include <functional>

namespace tallowbay::posix {

// What was installed, or built, together with the program: its helper executables lie in
// ../libexec/tallowbay as seen from the program's own folder, in a build tree as in an installed
// one. What artwork there is, is for the toolkit to say.
class LinuxResources : public Resources {
public:
    using HasImage = std::function<bool(const std::string& name)>;
    LinuxResources(const std::filesystem::path& programFolder, HasImage);

    std::filesystem::path executable(const std::string& name) const override;
    bool hasImage(const std::string& name) const override { return imageExists(name); }

    // Where executable() looks.
    const std::filesystem::path& helperFolder() const { return helpers; }

private:
    std::filesystem::path helpers;
    HasImage imageExists;
};

// The folder of the program that runs; empty path if the system does not tell.
std::filesystem::path runningProgramFolder();

// Where the search path has a program; empty path if nowhere. Its relative entries, which depend on
// where we were started, are passed over.
std::filesystem::path executableOnSearchPath(const std::string& name);

// The tools: our own helpers, and pngquant from wherever the search path has it. A tool that is
// nowhere keeps a path at which no file exists. cjpeg is always ours, since the distribution's
// reads no JPEG files.
ToolPaths linuxToolPaths(const LinuxResources&);

} // namespace tallowbay::posix
