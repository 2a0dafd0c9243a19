#include "platform/ImageCodec.h"

#include "platform/FileSystem.h"

namespace tallowbay {

std::variant<Bitmap, ImageError> loadImage(
    const FileSystem& files, const ImageCodec& codec, const std::filesystem::path& path)
{
    const auto size = files.size(path);
    if (!size)
        return ImageError::unreadable;
    if (*size > imageLimits::fileBytes)
        return ImageError::tooLarge;
    const auto bytes = files.read(path);
    if (!bytes)
        return ImageError::unreadable;
    return codec.decode(*bytes);
}

} // namespace tallowbay
