#include "capture/ImageCompressor.h"

#include "base/AsciiText.h"
#include "capture/ProductFolder.h"
#include "platform/FileSystem.h"

#include <utility>

namespace tallowbay {

namespace fs = std::filesystem;

namespace {

fs::path bundledPath(const Resources& resources, const std::string& name, const fs::path& otherwise)
{
    const fs::path bundled = resources.executable(name);
    return bundled.empty() ? otherwise : bundled;
}

} // namespace

ImageCompressor::ImageCompressor(
    FileSystem& fileSystem, Processes& processes, const Resources& resources,
    const ToolPaths& tools)
    : fileSystem(&fileSystem)
    , processes(&processes)
    , folder(optimizedFolder(fileSystem))
    , pngquant(bundledPath(resources, "pngquant", tools.pngquant))
    , cjpeg(tools.cjpeg)
    , sips(tools.sips)
{
}

fs::path ImageCompressor::outputFor(const fs::path& input) const
{
    return folder / input.filename();
}

ImageCompressor ImageCompressor::into(fs::path outputFolder) const
{
    ImageCompressor other = *this;
    other.folder = std::move(outputFolder);
    return other;
}

std::optional<fs::path> ImageCompressor::compress(const fs::path& input) const
{
    return compress(input, folder);
}

std::optional<fs::path> ImageCompressor::compress(
    const fs::path& input, const fs::path& outputFolder) const
{
    const std::string extension = lowercaseExtension(input);
    const bool isPNG = extension == "png";
    const fs::path output = outputFolder / input.filename();
    fileSystem->createFolders(outputFolder);
    if (!isPNG && extension != "jpg" && extension != "jpeg")
        return std::nullopt;
    const bool wasThere = fileSystem->exists(output);
    const auto result = isPNG ? compressPNG(input, output) : compressJPEG(input, output);
    if (!result && !wasThere)
        fileSystem->remove(output); // half a copy would pass for a whole one from now on
    return result;
}

std::optional<fs::path> ImageCompressor::compressPNG(
    const fs::path& input, const fs::path& output) const
{
    const std::vector<std::string> arguments{"--quality=50-70", "--speed=10", "--output", output,
                                             "--force",         input};
    if (produces(pngquant, arguments, output))
        return output;
    return sipsFallback(input, output);
}

std::optional<fs::path> ImageCompressor::compressJPEG(
    const fs::path& input, const fs::path& output) const
{
    if (produces(cjpeg, {"-quality", "85", "-outfile", output, input}, output))
        return output;
    return sipsFallback(input, output);
}

std::optional<fs::path> ImageCompressor::sipsFallback(
    const fs::path& input, const fs::path& output) const
{
    const bool scaled =
        processes->run(sips, {"--resampleHeightWidthMax", "1400", input, "--out", output});
    return scaled && fileSystem->exists(output) ? std::optional(output) : std::nullopt;
}

bool ImageCompressor::produces(
    const fs::path& tool, const std::vector<std::string>& arguments, const fs::path& output) const
{
    return fileSystem->exists(tool) && processes->run(tool, arguments)
        && fileSystem->exists(output);
}

std::string lowercaseExtension(const fs::path& path)
{
    std::string extension = path.extension().string();
    extension.erase(0, 1);
    return asciiLowercase(std::move(extension));
}

} // namespace tallowbay
