// Whatever bytes claim to be a picture: the codec gives an error or a picture that can be written
// and read again.

#include "base/Fatal.h"
#include "fuzz/FuzzTarget.h"
#include "platform/qt/graphics/QtImageCodec.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImage>

namespace tallowbay::fuzz {

namespace {

// Most sanitizers slow large pictures down so much that nothing else would be tried.
constexpr std::int64_t pixelsWorthDecoding = 1 << 20;

void require(bool holds, const char* what)
{
    if (!holds)
        fatalError(what);
}

void tryBytes(std::string_view bytes)
{
    static const qt::QtImageCodec codec;
    const auto size = codec.pixelSize(bytes);
    if (const auto* known = std::get_if<PixelSize>(&size);
        known && std::int64_t{known->width} * known->height > pixelsWorthDecoding)
        return;
    const auto decoded = codec.decode(bytes);
    if (std::holds_alternative<ImageError>(decoded))
        return;
    const Bitmap& bitmap = std::get<Bitmap>(decoded);
    require(std::holds_alternative<PixelSize>(size), "a picture without a size");
    require(std::get<PixelSize>(size) == bitmap.size(), "a picture of another size than stated");
    const auto written = codec.encodePng(bitmap);
    require(written.has_value(), "a picture that cannot be written");
    const auto again = codec.decode(*written);
    require(std::holds_alternative<Bitmap>(again), "a written picture that cannot be read");
    require(std::get<Bitmap>(again).size() == bitmap.size(), "a written picture of another size");
    require(codec.encodeJpeg(bitmap, 0.85).has_value(), "a picture that makes no JPEG");
}

std::uint32_t checksum(std::string_view bytes)
{
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1 ? crc >> 1 ^ 0xEDB88320u : crc >> 1;
    }
    return ~crc;
}

std::uint32_t numberAt(const std::string& bytes, std::size_t at)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

// A change that only broke a checksum would never be seen by the code behind it.
std::string withRightChecksums(std::string png)
{
    constexpr std::size_t signature = 8, frame = 12;
    for (std::size_t at = signature; at + frame <= png.size();) {
        const std::size_t length = numberAt(png, at);
        if (length > png.size() - at - frame)
            break;
        const std::uint32_t crc = checksum(std::string_view(png).substr(at + 4, length + 4));
        for (std::size_t i = 0; i < 4; ++i)
            png[at + 8 + length + i] = static_cast<char>(crc >> (24 - 8 * i));
        at += length + frame;
    }
    return png;
}

std::string encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes.toStdString();
}

} // namespace

std::vector<std::string> seeds()
{
    std::vector<std::string> result;
    QImage image(23, 17, QImage::Format_ARGB32);
    for (int i = 0; i < 23 * 17; ++i)
        image.setPixel(i % 23, i / 23, static_cast<uint>(i) * 2654435761u);
    for (const auto format :
         {QImage::Format_ARGB32, QImage::Format_RGB32, QImage::Format_RGBA64,
          QImage::Format_Grayscale8, QImage::Format_Grayscale16, QImage::Format_Indexed8,
          QImage::Format_Mono}) {
        QImage each = image.convertToFormat(format);
        result.push_back(encoded(each, "png"));
        each.setText(QStringLiteral("Comment"), QStringLiteral("text"));
        each.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
        result.push_back(encoded(each, "png"));
        result.push_back(encoded(each, "jpeg"));
    }
    const std::string exif = std::string(
                                 "\xFF\xE1\0\x22"
                                 "Exif\0\0MM\0*\0\0\0\x08\0\x01",
                                 20)
        + std::string("\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0", 16);
    result.push_back(result.back().substr(0, 2) + exif + result.back().substr(2));
    return result;
}

} // namespace tallowbay::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tallowbay::fuzz;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    tryBytes(bytes);
    if (bytes.starts_with("\x89PNG"))
        tryBytes(withRightChecksums(bytes));
    return 0;
}
