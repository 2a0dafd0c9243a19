#pragma once

#include "base/Bitmap.h"

#include <QImage>

namespace tallowbay::qt {

// The bitmap's own memory as Qt sees it: no copy is made, so the bitmap has to outlive the image.
inline QImage imageOver(const Bitmap& bitmap)
{
    return QImage(
        reinterpret_cast<const uchar*>(bitmap.row(0)), bitmap.size().width, bitmap.size().height,
        static_cast<qsizetype>(bitmap.bytesPerRow()), QImage::Format_ARGB32_Premultiplied);
}
inline QImage imageOver(Bitmap& bitmap)
{
    return QImage(
        reinterpret_cast<uchar*>(bitmap.row(0)), bitmap.size().width, bitmap.size().height,
        static_cast<qsizetype>(bitmap.bytesPerRow()), QImage::Format_ARGB32_Premultiplied);
}

} // namespace tallowbay::qt
