#pragma once

#include <filesystem>

namespace tallowbay {

// Where the tools are that the logic runs. The defaults hold where a platform names nothing else.
struct ToolPaths {
    std::filesystem::path pngquant = "/opt/homebrew/bin/pngquant";
    std::filesystem::path cjpeg = "/opt/homebrew/opt/mozjpeg/bin/cjpeg";
    std::filesystem::path sips = "/usr/bin/sips";
    std::filesystem::path defaults = "/usr/bin/defaults";
    std::filesystem::path screencapture = "/usr/sbin/screencapture";
};

} // namespace tallowbay
