#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tallowbay {

// Runs other programs, each with a fixed list of arguments and without a shell.
//
// Thread: any; several may run at once.
class Processes {
public:
    virtual ~Processes() = default;

    // Blocks until the program has ended, however long that takes. True exactly if it could be
    // started and ended with status 0; an end by a signal is not 0. Its output goes to the null
    // device and its input is empty; it inherits the environment and the working folder, and none
    // of our descriptors.
    virtual bool run(
        const std::filesystem::path& program, const std::vector<std::string>& arguments) = 0;
};

// What came along with the program.
//
// Thread: any.
class Resources {
public:
    virtual ~Resources() = default;

    // The path of an executable that was shipped or installed for us under this name; empty path
    // if there is none.
    virtual std::filesystem::path executable(const std::string& name) const = 0;

    // Whether there is artwork of this name.
    virtual bool hasImage(const std::string& name) const = 0;
};

// Where the tools are that the logic runs. The defaults hold where a platform names nothing else.
struct ToolPaths {
    std::filesystem::path pngquant = "/opt/homebrew/bin/pngquant";
    std::filesystem::path cjpeg = "/opt/homebrew/opt/mozjpeg/bin/cjpeg";
    std::filesystem::path sips = "/usr/bin/sips";
    std::filesystem::path defaults = "/usr/bin/defaults";
    std::filesystem::path screencapture = "/usr/sbin/screencapture";
};

} // namespace tallowbay
