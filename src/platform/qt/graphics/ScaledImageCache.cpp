#include "platform/qt/graphics/ScaledImageCache.h"

#include "platform/qt/graphics/BitmapImage.h"

namespace tallowbay::qt {

QImage ScaledImageCache::scaled(const Image& image, QSize size)
{
    const QImage whole = imageOver(*image);
    if (whole.size() == size)
        return whole;
    if (source.lock() != image || result.size() != size) {
        result = whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        source = image;
        // An opaque picture is copied to the screen without looking at what lies below.
        if (image->isOpaque())
            result.reinterpretAsFormat(QImage::Format_RGB32);
    }
    return result;
}

} // namespace tallowbay::qt
