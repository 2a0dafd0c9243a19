#pragma once

#include "platform/ImageCodec.h"

namespace tallowbay::headless {

// Pictures as readable text: "PNG 3x2" or "JPEG 0.85 3x2", a line feed, then the pixels, eight hex
// digits each. It keeps every rule of the seam but the file formats.
class PlainImageCodec final : public ImageCodec {
public:
    std::variant<Bitmap, ImageError> decode(std::string_view bytes) const override;
    std::variant<Bitmap, ImageError> decodeThumbnail(
        std::string_view bytes, PixelSize box) const override;
    std::variant<PixelSize, ImageError> pixelSize(std::string_view bytes) const override;
    std::optional<std::string> encodePng(const Bitmap&) const override;
    std::optional<std::string> encodeJpeg(const Bitmap&, double quality) const override;

    bool failEncoding = false;
};

} // namespace tallowbay::headless
