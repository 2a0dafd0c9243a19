#include "platform/headless/PlainImageCodec.h"

#include <charconv>
#include <cstdio>
#include <sstream>

namespace tallowbay::headless {

namespace {

std::string write(const std::string& head, const Bitmap& bitmap)
{
    std::ostringstream out;
    out << head << ' ' << bitmap.size().width << 'x' << bitmap.size().height << '\n';
    std::string text = out.str();
    for (int y = 0; y < bitmap.size().height; ++y) {
        for (int x = 0; x < bitmap.size().width; ++x) {
            char digits[9];
            std::snprintf(digits, sizeof digits, "%08x", bitmap.pixel(x, y));
            text.append(digits, 8);
        }
    }
    return text;
}

// The head without its format, quality included: "3x2" of "JPEG 0.85 3x2".
std::string_view sizeText(std::string_view bytes)
{
    const auto line = bytes.substr(0, bytes.find('\n'));
    return line.substr(line.rfind(' ') + 1);
}

} // namespace

std::variant<PixelSize, ImageError> PlainImageCodec::pixelSize(std::string_view bytes) const
{
    if (!bytes.starts_with("PNG ") && !bytes.starts_with("JPEG "))
        return ImageError::unknownFormat;
    const auto text = sizeText(bytes);
    PixelSize size;
    const char* const end = text.data() + text.size();
    const auto width = std::from_chars(text.data(), end, size.width);
    if (width.ec != std::errc() || width.ptr == end || *width.ptr != 'x')
        return ImageError::damaged;
    const auto height = std::from_chars(width.ptr + 1, end, size.height);
    if (height.ec != std::errc() || height.ptr != end || size.width < 1 || size.height < 1)
        return ImageError::damaged;
    if (size.width > imageLimits::side || size.height > imageLimits::side
        || std::int64_t{size.width} * size.height > imageLimits::pixels)
        return ImageError::tooLarge;
    return size;
}

std::variant<Bitmap, ImageError> PlainImageCodec::decode(std::string_view bytes) const
{
    const auto head = pixelSize(bytes);
    if (const auto* error = std::get_if<ImageError>(&head))
        return *error;
    const PixelSize size = std::get<PixelSize>(head);
    const auto lineEnd = bytes.find('\n');
    const auto count = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
    if (lineEnd == std::string_view::npos || bytes.size() - lineEnd - 1 != count * 8)
        return ImageError::damaged;
    Bitmap bitmap(size);
    for (std::size_t index = 0; index < count; ++index) {
        const char* const digits = bytes.data() + lineEnd + 1 + index * 8;
        if (std::from_chars(digits, digits + 8, bitmap.row(0)[index], 16).ptr != digits + 8)
            return ImageError::damaged;
    }
    return bitmap;
}

std::variant<Bitmap, ImageError> PlainImageCodec::decodeThumbnail(
    std::string_view bytes, PixelSize box) const
{
    auto whole = decode(bytes);
    const auto* picture = std::get_if<Bitmap>(&whole);
    if (!picture)
        return whole;
    Bitmap thumbnail(thumbnailSize(picture->size(), box));
    const auto [width, height] = thumbnail.size();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            thumbnail.row(y)[x] = picture->pixel(
                x * picture->size().width / width, y * picture->size().height / height);
    return thumbnail;
}

std::optional<std::string> PlainImageCodec::encodePng(const Bitmap& bitmap) const
{
    return failEncoding ? std::nullopt : std::optional(write("PNG", bitmap));
}

std::optional<std::string> PlainImageCodec::encodeJpeg(const Bitmap& bitmap, double quality) const
{
    std::ostringstream head;
    head << "JPEG " << quality;
    return failEncoding ? std::nullopt : std::optional(write(head.str(), bitmap));
}

} // namespace tallowbay::headless
