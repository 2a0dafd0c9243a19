#pragma once

#include "capture/ImageCompressor.h"
#include "editor/AnnotationItem.h"
#include "platform/Graphics.h"
#include "platform/ImageCodec.h"
#include "platform/OffscreenGraphics.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace tallowbay {

// Burns items into pictures and pictures into files.
//
// A blur is a promise: of what it covers, nothing reaches the file. Every pixel that its rectangle
// touches is replaced as a whole, and the file is made from the flattened pixels alone, so that
// no text, thumbnail, profile or hidden colour of the old file can survive.
//
// Thread: any; a cheap value, of which background jobs take a copy.
class AnnotationExporter {
public:
    AnnotationExporter(FileSystem&, const ImageCodec&, const OffscreenGraphics&, ImageCompressor);

    // The picture, in its own pixel size, with the items of a canvas of that size. Empty if the
    // canvas has no room for a picture, or there is not enough memory.
    std::optional<Bitmap> flattenAnnotation(
        const Image&, const std::vector<AnnotationItem>&, Size canvasSize, double imageInset) const;

    // By the extension, whatever its case: PNG for "png", else JPEG. Empty if that fails.
    std::optional<std::string> encode(const Bitmap&, const std::filesystem::path& url) const;

    // The bytes that the visible file is to hold: encoded and sent through the compressing tools,
    // in a folder of their own. Empty if anything fails.
    std::optional<std::string> compressed(const Bitmap&, const std::filesystem::path& url) const;

    // Puts them into the folder of compressed copies, under the same file name. The file there is
    // replaced whole, so that a reader finds the old one or the new one; on failure (false) it
    // stays as it was.
    bool writeFlattenedImage(std::string_view bytes, const std::filesystem::path& url) const;

private:
    FileSystem* fileSystem;
    const ImageCodec* codec;
    const OffscreenGraphics* graphics;
    ImageCompressor compressor;
};

// Draws the items onto a picture of this size, in its pixels.
void drawFlattened(
    GraphicsContext&, const Image&, const std::vector<AnnotationItem>&, Size canvasSize,
    double imageInset);

} // namespace tallowbay
