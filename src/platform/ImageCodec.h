#pragma once

#include "base/Bitmap.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tallowbay {

class FileSystem;

enum class ImageError {
    unreadable, // there is no such file, or it may not be read
    unknownFormat, // neither PNG nor JPEG, by its first bytes
    tooLarge, // more than imageLimits allow
    damaged, // cut off, contradictory, or without any pixel
};

// What is refused before any memory is taken for it.
namespace imageLimits {
inline constexpr std::uintmax_t fileBytes = 256u << 20;
inline constexpr int side = 32767;
inline constexpr std::int64_t pixels = 64 << 20;
} // namespace imageLimits

// Pictures to bytes and back. The bytes say what they are; a file's name does not matter.
//
// Thread: any; several calls may run at once. Nothing throws.
class ImageCodec {
public:
    virtual ~ImageCodec() = default;

    // The picture as it is to be seen: upright (an orientation that the file states is applied)
    // and converted to sRGB from whatever profile the file carries; 16-bit, grey and palette
    // pictures come out like any other. Memory stays below 32 bytes a pixel that imageLimits allow.
    // Errors: unknownFormat, tooLarge, damaged. A file whose end is missing is damaged, even if
    // pixels could be made of the rest.
    virtual std::variant<Bitmap, ImageError> decode(std::string_view bytes) const = 0;

    // What decode returns, scaled down with smoothing until it fits into the box, in its own
    // proportions and at least a pixel on each side; never scaled up. A side of the box below one
    // counts as one. Takes less time and memory than decode where the format allows. Errors: those
    // of decode.
    virtual std::variant<Bitmap, ImageError> decodeThumbnail(
        std::string_view bytes, PixelSize box) const = 0;

    // The size that decode would return, from the file's head alone; the rest may be damaged.
    virtual std::variant<PixelSize, ImageError> pixelSize(std::string_view bytes) const = 0;

    // Both write the pixels and nothing else: no profile, text, thumbnail or other metadata.
    // Empty if no bytes could be made.

    // 8 bits a channel, without an alpha channel if the picture is opaque; packed fast rather than
    // small.
    virtual std::optional<std::string> encodePng(const Bitmap&) const = 0;

    // Quality 0 to 1. What is transparent is laid over the image backdrop's dark grey, which is how
    // it is shown.
    virtual std::optional<std::string> encodeJpeg(const Bitmap&, double quality) const = 0;
};

// Reads and decodes a file without ever holding one that is larger than imageLimits::fileBytes.
// Errors: those of decode, and unreadable. Thread: any.
std::variant<Bitmap, ImageError> loadImage(
    const FileSystem&, const ImageCodec&, const std::filesystem::path&);

// The same for a thumbnail.
std::variant<Bitmap, ImageError> loadThumbnail(
    const FileSystem&, const ImageCodec&, const std::filesystem::path&, PixelSize box);

// The size of a thumbnail of a picture of that size.
PixelSize thumbnailSize(PixelSize picture, PixelSize box);

} // namespace tallowbay
