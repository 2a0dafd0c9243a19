#pragma once

#include "platform/ImageCodec.h"

namespace tallowbay::qt {

enum class ImageFileFormat { png, jpeg };

// What a picture's file says about itself, read without decoding it and without taking memory.
struct ImageFileHead {
    ImageFileFormat format = ImageFileFormat::png;
    PixelSize size; // as stored, before an orientation is applied; within imageLimits
};

// Errors: unknownFormat, tooLarge, damaged.
std::variant<ImageFileHead, ImageError> readImageFileHead(std::string_view bytes);

// Whether every part of the file is there, up to its end mark. What follows the end mark does not
// matter. Decoders alone do not tell: they fill what is missing with grey.
bool isCompleteImageFile(std::string_view bytes, ImageFileFormat);

// Whether a PNG says that it is sRGB in the way that is older than the chunk of that name: by a
// gamma of 1/2.2, with sRGB's primaries or none. A real curve of 2.2 is darker in dark tones;
// nobody who writes this means it, and no viewer shows it so.
bool isSrgbByItsGamma(std::string_view png);

} // namespace tallowbay::qt
