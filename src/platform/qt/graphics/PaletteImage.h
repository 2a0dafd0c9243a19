#pragma once

#include "base/Bitmap.h"

#include <QImage>

namespace tallowbay::qt {

// A picture whose pixels are 8-bit indices of colours, as compressed screenshots are. To treat the
// colours once, rather than every pixel, takes half the time and less than half the memory.
//
// Stateless. Thread: any.
class PaletteImage {
public:
    // The image has Format_Indexed8.
    explicit PaletteImage(QImage image)
        : image(std::move(image))
    {
    }

    // Its colours in one row, ARGB32 and not converted yet, in its colour space; never empty.
    QImage colors() const;

    // The picture with these for its colours: a row that was made of them, premultiplied.
    Bitmap painted(const QImage& colors) const;

    // The same, smaller by whole pixels: each is the mean of those that it stands for. At least as
    // large as told, and no longer than it has to be for scaling it down further with smoothing.
    QImage reduced(const QImage& colors, PixelSize least) const;

private:
    QImage image;
};

} // namespace tallowbay::qt
