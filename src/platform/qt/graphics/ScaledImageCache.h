#pragma once

#include "base/Bitmap.h"

#include <QImage>

namespace tallowbay::qt {

// Remembers the last picture in the last size it was drawn in, since a canvas shows the same one
// again at every move of the mouse. Does not keep the picture itself alive. One thread at a time.
class ScaledImageCache {
public:
    // The picture in exactly this many pixels. Valid as long as the picture.
    QImage scaled(const Image&, QSize);

private:
    std::weak_ptr<const Bitmap> source;
    QImage result;
};

} // namespace tallowbay::qt
