#include "platform/ImageCodec.h"

#include "platform/FileSystem.h"

#include <algorithm>
#include <cmath>

namespace tallowbay {

namespace {

std::variant<std::string, ImageError> readBounded(
    const FileSystem& files, const std::filesystem::path& path)
{
    const auto size = files.size(path);
    if (!size)
        return ImageError::unreadable;
    if (*size > imageLimits::fileBytes)
        return ImageError::tooLarge;
    auto bytes = files.read(path);
    if (!bytes)
        return ImageError::unreadable;
    return std::move(*bytes);
}

} // namespace

std::variant<Bitmap, ImageError> loadImage(
    const FileSystem& files, const ImageCodec& codec, const std::filesystem::path& path)
{
    const auto read = readBounded(files, path);
    if (const auto* error = std::get_if<ImageError>(&read))
        return *error;
    return codec.decode(std::get<std::string>(read));
}

std::variant<Bitmap, ImageError> loadThumbnail(
    const FileSystem& files, const ImageCodec& codec, const std::filesystem::path& path,
    PixelSize box)
{
    const auto read = readBounded(files, path);
    if (const auto* error = std::get_if<ImageError>(&read))
        return *error;
    return codec.decodeThumbnail(std::get<std::string>(read), box);
}

PixelSize thumbnailSize(PixelSize picture, PixelSize box)
{
    const double scale = std::min(
        {1.0, static_cast<double>(std::max(box.width, 1)) / picture.width,
         static_cast<double>(std::max(box.height, 1)) / picture.height});
    const auto scaled = [&](int side) {
        return std::max(static_cast<int>(std::floor(side * scale + 1e-6)), 1);
    };
    return {scaled(picture.width), scaled(picture.height)};
}

} // namespace tallowbay
