#include "platform/qt/graphics/ImageFileStructure.h"

#include <cstdint>
#include <optional>

namespace tallowbay::qt {

namespace {

constexpr std::string_view pngSignature("\x89PNG\r\n\x1a\n", 8);
constexpr std::string_view jpegSignature("\xFF\xD8\xFF", 3);

// Big-endian numbers at a position; never reads outside of the bytes.
class Reader {
public:
    explicit Reader(std::string_view bytes)
        : bytes(bytes)
    {
    }

    std::size_t position = 0;

    std::optional<std::uint32_t> number(std::size_t octets)
    {
        if (bytes.size() - position < octets)
            return std::nullopt;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < octets; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes[position++]);
        return value;
    }
    bool skip(std::size_t octets)
    {
        if (bytes.size() - position < octets)
            return false;
        position += octets;
        return true;
    }
    std::string_view text(std::size_t octets) const { return bytes.substr(position, octets); }

private:
    std::string_view bytes;
};

std::variant<ImageFileHead, ImageError> checkedHead(
    ImageFileFormat format, std::uint32_t width, std::uint32_t height)
{
    if (width == 0 || height == 0)
        return ImageError::damaged;
    if (width > imageLimits::side || height > imageLimits::side
        || std::int64_t{width} * height > imageLimits::pixels)
        return ImageError::tooLarge;
    return ImageFileHead{format, {static_cast<int>(width), static_cast<int>(height)}};
}

std::variant<ImageFileHead, ImageError> readPngHead(std::string_view bytes)
{
    Reader reader(bytes);
    reader.skip(pngSignature.size());
    if (reader.number(4) != 13u || reader.text(4) != "IHDR" || !reader.skip(4))
        return ImageError::damaged;
    const auto width = reader.number(4);
    const auto height = reader.number(4);
    if (!width || !height)
        return ImageError::damaged;
    return checkedHead(ImageFileFormat::png, *width, *height);
}

struct PngChunk {
    std::string_view name;
    std::string_view content;
};

// Empty behind the last chunk, and for one that is cut off.
std::optional<PngChunk> nextChunk(Reader& reader)
{
    constexpr std::size_t nameLength = 4, checksumLength = 4;
    const auto length = reader.number(4);
    if (!length)
        return std::nullopt;
    const std::string_view name = reader.text(nameLength);
    const std::string_view content = reader.text(nameLength + *length);
    if (!reader.skip(nameLength + *length + checksumLength))
        return std::nullopt;
    return PngChunk{name, content.substr(nameLength)};
}

bool isCompletePng(std::string_view bytes)
{
    Reader reader(bytes);
    reader.skip(pngSignature.size());
    while (const auto chunk = nextChunk(reader))
        if (chunk->name == "IEND")
            return true;
    return false;
}

bool areNear(std::uint32_t value, std::uint32_t wanted, std::uint32_t tolerance)
{
    return value + tolerance >= wanted && value <= wanted + tolerance;
}

// Both count hundred-thousandths, as the file does.

bool isGammaOfSrgb(std::string_view content)
{
    constexpr std::uint32_t wanted = 45455, tolerance = wanted / 20; // less cannot be told apart
    const auto gamma = Reader(content).number(4);
    return gamma && areNear(*gamma, wanted, tolerance);
}

bool arePrimariesOfSrgb(std::string_view content)
{
    constexpr std::uint32_t tolerance = 1000;
    Reader reader(content);
    for (const std::uint32_t wanted : {31270, 32900, 64000, 33000, 30000, 60000, 15000, 6000}) {
        const auto value = reader.number(4);
        if (!value || !areNear(*value, wanted, tolerance))
            return false;
    }
    return true;
}

namespace marker {
constexpr std::uint32_t startOfFrame = 0xC0, huffmanTable = 0xC4, extension = 0xC8,
                        arithmeticTable = 0xCC, lastOfFrames = 0xCF, firstRestart = 0xD0,
                        lastRestart = 0xD7, startOfImage = 0xD8, endOfImage = 0xD9,
                        startOfScan = 0xDA, temporary = 0x01;
} // namespace marker

bool isFrame(std::uint32_t code)
{
    return code >= marker::startOfFrame && code <= marker::lastOfFrames
        && code != marker::huffmanTable && code != marker::extension
        && code != marker::arithmeticTable;
}

bool standsAlone(std::uint32_t code)
{
    return code == marker::temporary || code == marker::startOfImage
        || (code >= marker::firstRestart && code <= marker::lastRestart);
}

// The next marker's code; what lies before it, such as the data of a scan, is passed over.
std::optional<std::uint32_t> nextMarker(Reader& reader)
{
    while (const auto octet = reader.number(1)) {
        if (*octet != 0xFF)
            continue;
        auto code = reader.number(1);
        while (code == 0xFFu)
            code = reader.number(1);
        if (!code || *code != 0)
            return code;
    }
    return std::nullopt;
}

// Passes over a marker's own segment, if it has one.
bool skipSegment(Reader& reader, std::uint32_t code)
{
    if (standsAlone(code))
        return true;
    const auto length = reader.number(2);
    return length && *length >= 2 && reader.skip(*length - 2);
}

std::variant<ImageFileHead, ImageError> readJpegHead(std::string_view bytes)
{
    Reader reader(bytes);
    while (const auto code = nextMarker(reader)) {
        if (*code == marker::endOfImage || *code == marker::startOfScan)
            break;
        if (isFrame(*code)) {
            constexpr std::size_t lengthAndPrecision = 3;
            reader.skip(lengthAndPrecision);
            const auto height = reader.number(2);
            const auto width = reader.number(2);
            if (!width || !height)
                break;
            return checkedHead(ImageFileFormat::jpeg, *width, *height);
        }
        if (!skipSegment(reader, *code))
            break;
    }
    return ImageError::damaged;
}

bool isCompleteJpeg(std::string_view bytes)
{
    Reader reader(bytes);
    bool hasScan = false;
    while (const auto code = nextMarker(reader)) {
        if (*code == marker::endOfImage)
            return hasScan;
        hasScan = hasScan || *code == marker::startOfScan;
        if (!skipSegment(reader, *code))
            return false;
    }
    return false;
}

} // namespace

std::variant<ImageFileHead, ImageError> readImageFileHead(std::string_view bytes)
{
    if (bytes.starts_with(pngSignature))
        return readPngHead(bytes);
    if (bytes.starts_with(jpegSignature))
        return readJpegHead(bytes);
    return ImageError::unknownFormat;
}

bool isCompleteImageFile(std::string_view bytes, ImageFileFormat format)
{
    return format == ImageFileFormat::png ? isCompletePng(bytes) : isCompleteJpeg(bytes);
}

bool isSrgbByItsGamma(std::string_view bytes)
{
    Reader reader(bytes);
    reader.skip(pngSignature.size());
    bool hasGamma = false;
    for (auto chunk = nextChunk(reader); chunk && chunk->name != "IDAT";
         chunk = nextChunk(reader)) {
        if (chunk->name == "iCCP" || (chunk->name == "cHRM" && !arePrimariesOfSrgb(chunk->content)))
            return false;
        if (chunk->name == "gAMA")
            hasGamma = isGammaOfSrgb(chunk->content);
    }
    return hasGamma;
}

} // namespace tallowbay::qt
