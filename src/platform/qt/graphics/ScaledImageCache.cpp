#include "platform/qt/graphics/ScaledImageCache.h"

#include "platform/qt/graphics/BitmapImage.h"

#include <functional>
#include <numeric>

namespace tallowbay::qt {

namespace {

bool isOpaque(const QImage& image)
{
    QRgb common = 0xFF000000;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        common = std::accumulate(row, row + image.width(), common, std::bit_and<>());
    }
    return common >= 0xFF000000;
}

} // namespace

QImage ScaledImageCache::scaled(const Image& image, QSize size)
{
    const QImage whole = imageOver(*image);
    if (whole.size() == size)
        return whole;
    if (source.lock() != image || result.size() != size) {
        result = {}; // before there is another
        result = whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        source = image;
        // An opaque picture is copied to the screen without looking at what lies below.
        if (isOpaque(result))
            result.reinterpretAsFormat(QImage::Format_RGB32);
    }
    return result;
}

} // namespace tallowbay::qt
