#pragma once

#include "platform/Processes.h"
#include "platform/Resources.h"
#include "platform/ToolPaths.h"

#include <filesystem>
#include <optional>

namespace tallowbay {

class FileSystem;

// Makes a smaller copy of a screenshot in the folder of compressed copies, under the same name, by
// running a compressing tool; where that is missing or fails, by scaling the picture down. The
// original is never touched. The copy is the result even if it came out larger.
//
// A cheap value: background jobs take a copy. Thread: any; compress() blocks until the tools have
// ended, and several may run at once. An empty result means that nothing was compressed.
class ImageCompressor {
public:
    ImageCompressor(FileSystem&, Processes&, const Resources&, const ToolPaths&);

    // By the extension, whatever its case: PNG and JPEG; anything else runs no tool. A copy that is
    // there already is overwritten. Where nothing was compressed, no new file is left behind.
    std::optional<std::filesystem::path> compress(const std::filesystem::path& input) const;

    // The same into another folder, which is made if it is missing. The tools write straight into
    // their output: whoever must never see half a file there lets them write somewhere private, and
    // puts the copy in place afterwards.
    std::optional<std::filesystem::path> compress(
        const std::filesystem::path& input, const std::filesystem::path& outputFolder) const;

    // One whose copies go into another folder.
    ImageCompressor into(std::filesystem::path outputFolder) const;

    // Where the copy of an input goes.
    std::filesystem::path outputFor(const std::filesystem::path& input) const;

private:
    std::optional<std::filesystem::path> compressPNG(
        const std::filesystem::path& input, const std::filesystem::path& output) const;
    std::optional<std::filesystem::path> compressJPEG(
        const std::filesystem::path& input, const std::filesystem::path& output) const;
    std::optional<std::filesystem::path> sipsFallback(
        const std::filesystem::path& input, const std::filesystem::path& output) const;
    bool produces(
        const std::filesystem::path& tool, const std::vector<std::string>& arguments,
        const std::filesystem::path& output) const;

    FileSystem* fileSystem;
    Processes* processes;
    std::filesystem::path folder;
    std::filesystem::path pngquant;
    std::filesystem::path cjpeg;
    std::filesystem::path sips;
};

// The extension without its dot, in lower case.
std::string lowercaseExtension(const std::filesystem::path&);

} // namespace tallowbay
