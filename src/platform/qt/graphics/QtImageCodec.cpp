#include "platform/qt/graphics/QtImageCodec.h"

#include "platform/qt/graphics/BitmapImage.h"
#include "platform/qt/graphics/ImageFileStructure.h"
#include "platform/qt/graphics/PaletteImage.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <cmath>
#include <cstring>
#include <new>
#include <optional>

namespace tallowbay::qt {

namespace {

constexpr int wideBytesPerPixel = 8; // of a picture with 16 bits a channel

// zlib's fastest level, on Qt's scale of a hundred.
constexpr int fastestCompression = 11;

// Where a picture is transparent, the canvas shows its backdrop.
constexpr QRgb jpegBackground = qRgb(13, 13, 13);

// Reads from bytes that it does not own.
class MemoryReader {
public:
    MemoryReader(std::string_view bytes, ImageFileFormat format)
        : content(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())))
        , buffer(&content)
        , reader(&buffer, format == ImageFileFormat::png ? "png" : "jpeg")
    {
        buffer.open(QIODevice::ReadOnly);
        reader.setAutoDetectImageFormat(false);
        reader.setAutoTransform(true);
    }

    QImage read() { return reader.read(); }

    // The size of the picture as it is to be seen. One with a palette still comes in its own size:
    // the reader would have the smaller one in a few colours, too, dotted.
    void scaleTo(PixelSize size)
    {
        const QSize wanted(size.width, size.height);
        if (!hasPalette())
            reader.setScaledSize(swapsSides() ? wanted.transposed() : wanted);
    }
    bool hasPalette() const
    {
        const auto format = reader.imageFormat();
        return format == QImage::Format_Indexed8 || format == QImage::Format_Mono
            || format == QImage::Format_MonoLSB;
    }
    bool swapsSides()
    {
        return reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    }

private:
    QByteArray content;
    QBuffer buffer;
    QImageReader reader;
};

bool isWide(const QImage& image)
{
    return image.depth() > 32 || image.format() == QImage::Format_Grayscale16;
}

// Profiles of grey or palette pictures apply to colours as well, so those are made first.
QImage inSrgb(QImage image)
{
    const QColorSpace space = image.colorSpace();
    image.convertTo(isWide(image) ? QImage::Format_RGBA64 : QImage::Format_ARGB32);
    if (space.isValid() && space != QColorSpace(QColorSpace::SRgb)) {
        image.setColorSpace(space);
        image.convertToColorSpace(QColorSpace::SRgb);
    }
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    return image;
}

QImage scaled(QImage image, PixelSize wanted)
{
    const QSize size(wanted.width, wanted.height);
    if (image.size() == size)
        return image;
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

Bitmap bitmapOf(const QImage& image)
{
    Bitmap bitmap({image.width(), image.height()});
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(bitmap.row(y), image.constScanLine(y), bitmap.bytesPerRow());
    return bitmap;
}

Bitmap finished(QImage decoded, std::optional<PixelSize> size)
{
    if (decoded.format() != QImage::Format_Indexed8) {
        QImage image = inSrgb(std::move(decoded));
        return bitmapOf(size ? scaled(std::move(image), *size) : image);
    }
    const PaletteImage picture(std::move(decoded));
    const QImage colors = inSrgb(picture.colors());
    if (!size)
        return picture.painted(colors);
    return bitmapOf(scaled(picture.reduced(colors, *size), *size));
}

// Of the size as it is to be seen, or the picture's own.
std::variant<Bitmap, ImageError> decodeTo(std::optional<PixelSize> size, std::string_view bytes)
try {
    if (bytes.size() > imageLimits::fileBytes)
        return ImageError::tooLarge;
    const auto head = readImageFileHead(bytes);
    if (const auto* error = std::get_if<ImageError>(&head))
        return *error;
    const auto format = std::get<ImageFileHead>(head).format;
    if (!isCompleteImageFile(bytes, format))
        return ImageError::damaged;
    MemoryReader reader(bytes, format);
    if (size)
        reader.scaleTo(*size);
    QImage image = reader.read();
    if (image.isNull())
        return ImageError::damaged;
    if (format == ImageFileFormat::png && isSrgbByItsGamma(bytes))
        image.setColorSpace(QColorSpace::SRgb);
    return finished(std::move(image), size);
} catch (const std::bad_alloc&) {
    return ImageError::tooLarge;
}

std::optional<std::string> write(const QImage& image, const char* format, auto adjust)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    adjust(writer);
    if (!writer.write(image))
        return std::nullopt;
    return bytes.toStdString();
}

} // namespace

QtImageCodec::QtImageCodec()
{
    QImageReader::setAllocationLimit(
        static_cast<int>(imageLimits::pixels * wideBytesPerPixel >> 20) + 1);
}

std::variant<Bitmap, ImageError> QtImageCodec::decode(std::string_view bytes) const
{
    return decodeTo(std::nullopt, bytes);
}

std::variant<Bitmap, ImageError> QtImageCodec::decodeThumbnail(
    std::string_view bytes, PixelSize box) const
{
    const auto whole = pixelSize(bytes);
    if (const auto* error = std::get_if<ImageError>(&whole))
        return *error;
    return decodeTo(thumbnailSize(std::get<PixelSize>(whole), box), bytes);
}

std::variant<PixelSize, ImageError> QtImageCodec::pixelSize(std::string_view bytes) const
{
    const auto head = readImageFileHead(bytes);
    if (const auto* error = std::get_if<ImageError>(&head))
        return *error;
    const auto& known = std::get<ImageFileHead>(head);
    if (known.format == ImageFileFormat::jpeg && MemoryReader(bytes, known.format).swapsSides())
        return PixelSize{known.size.height, known.size.width};
    return known.size;
}

std::optional<std::string> QtImageCodec::encodePng(const Bitmap& bitmap) const
{
    QImage image = imageOver(bitmap);
    // The same words without a meaning for their upper byte: no alpha channel is written.
    if (bitmap.isOpaque())
        image.reinterpretAsFormat(QImage::Format_RGB32);
    return write(
        image, "png", [](QImageWriter& writer) { writer.setCompression(fastestCompression); });
}

std::optional<std::string> QtImageCodec::encodeJpeg(const Bitmap& bitmap, double quality) const
{
    const QImage source = imageOver(bitmap);
    QImage opaque(source.size(), QImage::Format_RGB32);
    if (opaque.isNull())
        return std::nullopt;
    opaque.fill(jpegBackground);
    QPainter(&opaque).drawImage(0, 0, source);
    const int percent = static_cast<int>(std::lround(quality * 100));
    return write(opaque, "jpeg", [&](QImageWriter& writer) { writer.setQuality(percent); });
}

} // namespace tallowbay::qt
