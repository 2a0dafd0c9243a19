#include "editor/saving/AnnotationExporter.h"

#include "editor/ImagePlacement.h"
#include "editor/ShapeRenderer.h"
#include "platform/FileSystem.h"

#include <utility>

namespace tallowbay {

namespace fs = std::filesystem;

namespace {

constexpr double jpegQuality = 0.85;

// A folder that goes with this object.
class PrivateFolder {
public:
    explicit PrivateFolder(FileSystem& files)
        : files(files)
        , folder(files.makeTemporaryFolder())
    {
    }
    ~PrivateFolder()
    {
        if (folder)
            files.remove(*folder);
    }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    const std::optional<fs::path>& path() const { return folder; }

private:
    FileSystem& files;
    std::optional<fs::path> folder;
};

} // namespace

AnnotationExporter::AnnotationExporter(
    FileSystem& fileSystem, const ImageCodec& codec, const OffscreenGraphics& graphics,
    ImageCompressor compressor)
    : fileSystem(&fileSystem)
    , codec(&codec)
    , graphics(&graphics)
    , compressor(std::move(compressor))
{
}

void drawFlattened(
    GraphicsContext& context, const Image& image, const std::vector<AnnotationItem>& items,
    Size canvasSize, double imageInset)
{
    const auto placement = ImagePlacement::fit(canvasSize, image->size(), imageInset);
    const ShapeStyle style = ShapeStyle::forExport(placement.scale);
    context.drawImage(image, {{0, 0}, placement.imageSize});
    for (const AnnotationItem& item : items)
        drawItem(context, placement.toImage(item), style);
}

std::optional<Bitmap> AnnotationExporter::flattenAnnotation(
    const Image& image, const std::vector<AnnotationItem>& items, Size canvasSize,
    double imageInset) const
{
    if (!image || !ImagePlacement::fit(canvasSize, image->size(), imageInset).isUsable())
        return std::nullopt;
    return graphics->draw(image->size(), 1, [&](GraphicsContext& context) {
        drawFlattened(context, image, items, canvasSize, imageInset);
    });
}

std::optional<std::string> AnnotationExporter::encode(
    const Bitmap& bitmap, const fs::path& url) const
{
    return lowercaseExtension(url) == "png" ? codec->encodePng(bitmap)
                                            : codec->encodeJpeg(bitmap, jpegQuality);
}

std::optional<std::string> AnnotationExporter::compressed(
    const Bitmap& bitmap, const fs::path& url) const
{
    const auto bytes = encode(bitmap, url);
    const PrivateFolder folder(*fileSystem);
    if (!bytes || !folder.path())
        return std::nullopt;
    // A write that failed leaves the tools without their input.
    const fs::path input = *folder.path() / url.filename();
    fileSystem->writeAtomically(input, *bytes);
    const auto output = compressor.compress(input, *folder.path() / "compressed");
    return output ? fileSystem->read(*output) : std::nullopt;
}

bool AnnotationExporter::writeFlattenedImage(std::string_view bytes, const fs::path& url) const
{
    const fs::path visible = compressor.outputFor(url);
    fileSystem->createFolders(visible.parent_path());
    return fileSystem->writeAtomically(visible, bytes);
}

} // namespace tallowbay
