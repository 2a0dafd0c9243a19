#pragma once

#include "platform/ImageCodec.h"

namespace tallowbay::qt {

// Qt's own readers and writers, behind checks of the file's structure. Making one lifts Qt's limit
// on the memory of a picture, for the whole program, to what imageLimits allow.
class QtImageCodec final : public ImageCodec {
public:
    QtImageCodec();

    std::variant<Bitmap, ImageError> decode(std::string_view bytes) const override;
    std::variant<Bitmap, ImageError> decodeThumbnail(
        std::string_view bytes, PixelSize box) const override;
    std::variant<PixelSize, ImageError> pixelSize(std::string_view bytes) const override;
    std::optional<std::string> encodePng(const Bitmap&) const override;
    std::optional<std::string> encodeJpeg(const Bitmap&, double quality) const override;
};

} // namespace tallowbay::qt
