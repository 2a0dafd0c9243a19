#pragma once

#include "base/Bitmap.h"

#include <QImage>

#include <memory>
#include <utility>

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

// A bitmap without transparent pixels, of which the image becomes the owner.
inline QImage opaqueImage(Bitmap bitmap)
{
    Bitmap* const owned = std::make_unique<Bitmap>(std::move(bitmap)).release();
    return QImage(
        reinterpret_cast<const uchar*>(owned->row(0)), owned->size().width, owned->size().height,
        static_cast<qsizetype>(owned->bytesPerRow()), QImage::Format_RGB32,
        [](void* last) { std::unique_ptr<Bitmap>(static_cast<Bitmap*>(last)); }, owned);
}

} // namespace tallowbay::qt
