#include "platform/qt/graphics/QtImageCodec.h"

#include "platform/contract/ImageCodecContract.h"
#include "platform/headless/Desktop.h"
#include "platform/qt/graphics/BitmapImage.h"
#include "platform/qt/graphics/ImageFileStructure.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include <sys/mman.h>

namespace tallowbay::contract {

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, ImageCodecContract, qt::QtImageCodec);

} // namespace tallowbay::contract

namespace tallowbay::qt {
namespace {

std::string encoded(const QImage& image, const char* format, int quality = -1)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    EXPECT_TRUE(writer.write(image)) << writer.errorString().toStdString();
    return bytes.toStdString();
}

std::uint32_t crcOf(std::string_view bytes)
{
    std::uint32_t crc = 0xFFFFFFFFu;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = crc & 1 ? crc >> 1 ^ 0xEDB88320u : crc >> 1;
    }
    return ~crc;
}

std::string bigEndian(std::uint32_t value)
{
    return {
        static_cast<char>(value >> 24), static_cast<char>(value >> 16),
        static_cast<char>(value >> 8), static_cast<char>(value)};
}

std::string chunk(const std::string& name, const std::string& content)
{
    return bigEndian(static_cast<std::uint32_t>(content.size())) + name + content
        + bigEndian(crcOf(name + content));
}

const std::string pngSignature("\x89PNG\r\n\x1a\n", 8);

std::string pngHead(std::uint32_t width, std::uint32_t height)
{
    return pngSignature
        + chunk("IHDR", bigEndian(width) + bigEndian(height) + std::string("\x08\x06\0\0\0", 5));
}

// The same picture with an Exif segment that states an orientation.
std::string withOrientation(const std::string& jpeg, char orientation)
{
    const std::string exif = std::string("Exif\0\0MM\0*\0\0\0\x08\0\x01", 16)
        + std::string("\x01\x12\0\x03\0\0\0\x01\0", 9) + orientation + std::string(6, '\0');
    const auto length = static_cast<std::uint32_t>(exif.size() + 2);
    return jpeg.substr(0, 2) + "\xFF\xE1" + bigEndian(length).substr(2) + exif + jpeg.substr(2);
}

class QtImageCodecTest : public testing::Test {
protected:
    Bitmap decoded(const std::string& bytes) { return std::get<Bitmap>(codec.decode(bytes)); }
    ImageError error(const std::string& bytes) { return std::get<ImageError>(codec.decode(bytes)); }

    QtImageCodec codec;
};

MATCHER_P2(IsNear, word, tolerance, "")
{
    for (int shift = 0; shift < 32; shift += 8)
        if (std::abs(static_cast<int>(arg >> shift & 0xFF) - static_cast<int>(word >> shift & 0xFF))
            > tolerance)
            return false;
    return true;
}

// What a file may look like inside

TEST_F(QtImageCodecTest, Reads16BitPictures)
{
    QImage image(2, 1, QImage::Format_RGBA64);
    image.setPixelColor(0, 0, QColor::fromRgba64(0xFFFF, 0x8080, 0x0101, 0xFFFF));
    image.setPixelColor(1, 0, QColor::fromRgba64(0x1212, 0x3434, 0x5656, 0));
    const Bitmap bitmap = decoded(encoded(image, "png"));
    EXPECT_EQ(bitmap.pixel(0, 0), 0xFFFF8001u);
    EXPECT_EQ(bitmap.pixel(1, 0), 0u);
}

TEST_F(QtImageCodecTest, ReadsGreyPicturesOf8And16Bits)
{
    for (const auto format : {QImage::Format_Grayscale8, QImage::Format_Grayscale16}) {
        QImage image(2, 1, QImage::Format_RGB32);
        image.setPixel(0, 0, qRgb(200, 200, 200));
        image.setPixel(1, 0, qRgb(7, 7, 7));
        const Bitmap bitmap = decoded(encoded(image.convertToFormat(format), "png"));
        EXPECT_EQ(bitmap.pixel(0, 0), 0xFFC8C8C8u);
        EXPECT_EQ(bitmap.pixel(1, 0), 0xFF070707u);
    }
}

TEST_F(QtImageCodecTest, ReadsPalettesWithAndWithoutAlpha)
{
    QImage image(3, 1, QImage::Format_Indexed8);
    image.setColorTable({qRgba(10, 20, 30, 255), qRgba(200, 100, 50, 128), qRgba(9, 9, 9, 0)});
    for (int x = 0; x < 3; ++x)
        image.setPixel(x, 0, static_cast<uint>(x));
    const Bitmap bitmap = decoded(encoded(image, "png"));
    EXPECT_EQ(bitmap.pixel(0, 0), 0xFF0A141Eu);
    EXPECT_THAT(bitmap.pixel(1, 0), IsNear(0x80643219u, 1));
    EXPECT_EQ(bitmap.pixel(2, 0), 0u);
}

TEST_F(QtImageCodecTest, ReadsBlackAndWhitePictures)
{
    QImage image(9, 1, QImage::Format_Mono);
    image.fill(0);
    image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    image.setPixel(8, 0, 1);
    const Bitmap bitmap = decoded(encoded(image, "png"));
    EXPECT_EQ(bitmap.pixel(0, 0), 0xFF000000u);
    EXPECT_EQ(bitmap.pixel(8, 0), 0xFFFFFFFFu);
}

TEST_F(QtImageCodecTest, KeepsNoColourUnderFullTransparency)
{
    QImage image(1, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(0xAB, 0xCD, 0xEF, 0));
    const Bitmap bitmap = decoded(encoded(image, "png"));
    EXPECT_EQ(bitmap.pixel(0, 0), 0u);
    const QImage written =
        QImage::fromData(QByteArray::fromStdString(*codec.encodePng(bitmap)), "png");
    EXPECT_EQ(written.pixel(0, 0), qRgba(0, 0, 0, 0));
}

TEST_F(QtImageCodecTest, ConvertsProfilesToSrgb)
{
    for (const auto format : {QImage::Format_ARGB32, QImage::Format_RGB32, QImage::Format_RGBA64}) {
        for (const char* file : {"png", "jpeg"}) {
            QImage image(8, 8, format);
            image.fill(QColor(200, 100, 50));
            image.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
            const Bitmap bitmap = decoded(encoded(image, file, 100));
            // (200, 100, 50) in Display P3, computed with the two sets of primaries
            EXPECT_THAT(bitmap.pixel(4, 4), IsNear(0xFFD75D1Fu, 4)) << file;
        }
    }
}

TEST_F(QtImageCodecTest, ConvertsProfilesOfPalettes)
{
    QImage image(8, 8, QImage::Format_Indexed8);
    image.setColorTable({qRgb(200, 100, 50)});
    image.fill(0);
    image.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    const std::string png = encoded(image, "png");
    EXPECT_THAT(decoded(png).pixel(4, 4), IsNear(0xFFD75D1Fu, 4));
    const auto thumbnail = codec.decodeThumbnail(png, {2, 2});
    EXPECT_THAT(std::get<Bitmap>(thumbnail).pixel(1, 1), IsNear(0xFFD75D1Fu, 4));
}

// A PNG with these chunks behind its head.
std::string withChunks(const std::string& png, const std::string& chunks)
{
    constexpr std::size_t headEnd = 8 + 25;
    return png.substr(0, headEnd) + chunks + png.substr(headEnd);
}
std::string gammaChunk(std::uint32_t gamma)
{
    return chunk("gAMA", bigEndian(gamma));
}
std::string primariesChunk(const std::vector<std::uint32_t>& values)
{
    std::string content;
    for (const auto value : values)
        content += bigEndian(value);
    return chunk("cHRM", content);
}
const std::string srgbPrimaries =
    primariesChunk({31270, 32900, 64000, 33000, 30000, 60000, 15000, 6000});
const std::string adobePrimaries =
    primariesChunk({31270, 32900, 64000, 33000, 21000, 71000, 15000, 6000});

// Greys from black to white in steps of 17
QImage ramp(QImage::Format format)
{
    QImage image(16, 1, QImage::Format_RGB32);
    for (int x = 0; x < 16; ++x)
        image.setPixel(x, 0, qRgb(x * 17, x * 17, x * 17));
    return image.convertToFormat(format);
}

// Bug: such a picture came out darker in its dark tones than every other program shows it.
TEST_F(QtImageCodecTest, TakesAGammaOf22ForSrgb)
{
    for (const auto format :
         {QImage::Format_RGB32, QImage::Format_Grayscale8, QImage::Format_Grayscale16,
          QImage::Format_Indexed8, QImage::Format_RGBA64}) {
        const std::string png = encoded(ramp(format), "png");
        const Bitmap expected = decoded(png);
        for (const auto& chunks :
             {gammaChunk(45455), gammaChunk(45455) + srgbPrimaries,
              srgbPrimaries + gammaChunk(45000), gammaChunk(47000)})
            EXPECT_EQ(decoded(withChunks(png, chunks)), expected) << chunks;
    }
}

TEST_F(QtImageCodecTest, TakesForSrgbWhatIsNearEnough)
{
    const std::string png = encoded(ramp(QImage::Format_RGB32), "png");
    const Bitmap plain = decoded(png);
    const auto isSrgb = [&](const std::string& chunks) {
        return decoded(withChunks(png, chunks)) == plain;
    };
    for (const int off : {-2272, 2272})
        EXPECT_TRUE(isSrgb(gammaChunk(static_cast<std::uint32_t>(45455 + off)))) << off;
    for (const int off : {-2273, 2273})
        EXPECT_FALSE(isSrgb(gammaChunk(static_cast<std::uint32_t>(45455 + off)))) << off;
    for (std::size_t index = 0; index < 8; ++index) {
        const auto isSrgbWith = [&](int off) {
            std::vector<std::uint32_t> values{31270, 32900, 64000, 33000,
                                              30000, 60000, 15000, 6000};
            values[index] += static_cast<std::uint32_t>(off);
            return isSrgb(gammaChunk(45455) + primariesChunk(values));
        };
        for (const int near : {-1000, 1000})
            EXPECT_TRUE(isSrgbWith(near)) << index;
        for (const int far : {-1001, 1001})
            EXPECT_FALSE(isSrgbWith(far)) << index;
    }
}

TEST_F(QtImageCodecTest, AppliesEveryOtherGamma)
{
    for (const auto format :
         {QImage::Format_RGB32, QImage::Format_Grayscale8, QImage::Format_Grayscale16,
          QImage::Format_Indexed8, QImage::Format_RGBA64}) {
        const std::string png = encoded(ramp(format), "png");
        for (const auto& primaries : {std::string(), srgbPrimaries}) {
            // 0.5333 of the full light is 193 in sRGB
            const Bitmap linear = decoded(withChunks(png, gammaChunk(100000) + primaries));
            EXPECT_THAT(linear.pixel(8, 0), IsNear(0xFFC1C1C1u, 2)) << format;
            EXPECT_THAT(linear.pixel(1, 0), IsNear(0xFF494949u, 2)) << format;
            // 0.5333 to the power of 1.8 is 0.3227, which is 154 in sRGB
            const Bitmap old = decoded(withChunks(png, gammaChunk(55556) + primaries));
            EXPECT_THAT(old.pixel(8, 0), IsNear(0xFF9A9A9Au, 2)) << format;
        }
    }
}

TEST_F(QtImageCodecTest, AppliesOtherPrimariesAndProfilesWhateverTheGamma)
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(qRgb(100, 200, 50));
    const std::string plain = encoded(image, "png");
    // A green that sRGB does not have
    const Bitmap wide = decoded(withChunks(plain, gammaChunk(45455) + adobePrimaries));
    EXPECT_LT(wide.pixel(4, 4) >> 16 & 0xFF, 60u);

    image.fill(QColor(200, 100, 50));
    image.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    const std::string profiled = withChunks(encoded(image, "png"), gammaChunk(45455));
    EXPECT_THAT(decoded(profiled).pixel(4, 4), IsNear(0xFFD75D1Fu, 4));
}

TEST_F(QtImageCodecTest, TurnsAPictureAsItsOrientationSays)
{
    // Left half dark, right half light, upper rows with red
    QImage image(32, 16, QImage::Format_RGB32);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 32; ++x)
            image.setPixel(x, y, qRgb(y < 8 ? 255 : 0, x < 16 ? 0 : 255, 0));
    const std::string jpeg = encoded(image, "jpeg", 100);
    struct Row {
        char orientation;
        PixelSize size;
        std::uint32_t topLeft;
    };
    const std::vector<Row> rows{{1, {32, 16}, 0xFFFF0000u}, {2, {32, 16}, 0xFFFFFF00u},
                                {3, {32, 16}, 0xFF00FF00u}, {4, {32, 16}, 0xFF000000u},
                                {5, {16, 32}, 0xFFFF0000u}, {6, {16, 32}, 0xFF000000u},
                                {7, {16, 32}, 0xFF00FF00u}, {8, {16, 32}, 0xFFFFFF00u}};
    for (const Row& row : rows) {
        const std::string bytes = withOrientation(jpeg, row.orientation);
        EXPECT_EQ(std::get<PixelSize>(codec.pixelSize(bytes)), row.size);
        const Bitmap bitmap = decoded(bytes);
        EXPECT_EQ(bitmap.size(), row.size);
        EXPECT_THAT(bitmap.pixel(2, 2), IsNear(row.topLeft, 12)) << int(row.orientation);
    }
}

// Thumbnails

// Compressed screenshots have a palette; of theirs, a thumbnail needs colours in between.
TEST_F(QtImageCodecTest, MixesTheColoursOfAPaletteInAThumbnail)
{
    // Steps of red to the right, of green downwards.
    QImage steps(200, 200, QImage::Format_Indexed8);
    steps.setColorCount(256);
    for (int color = 0; color < 256; ++color)
        steps.setColor(color, qRgb(color % 16 * 17, color / 16 * 17, 0));
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x)
            steps.setPixel(x, y, static_cast<uint>(y * 2 / 25 * 16 + x * 2 / 25));
    const auto made = codec.decodeThumbnail(encoded(steps, "png"), {60, 60});
    const Bitmap& thumbnail = std::get<Bitmap>(made);
    ASSERT_EQ(thumbnail.size(), (PixelSize{60, 60}));
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 60; ++x) {
            const auto part = [](int place) { return static_cast<unsigned>(place * 256 / 60); };
            EXPECT_THAT(
                thumbnail.pixel(x, y), IsNear(0xFF000000u | part(x) << 16 | part(y) << 8, 16))
                << x << ", " << y;
        }
}

// Which is made in two steps then; sides that no block divides show whether they meet.
TEST_F(QtImageCodecTest, MakesASmallThumbnailOfALargePalette)
{
    QImage halves(1283, 771, QImage::Format_Indexed8);
    halves.setColorTable({qRgb(250, 10, 20), qRgba(0, 200, 100, 128), qRgb(0, 0, 0)});
    for (int y = 0; y < halves.height(); ++y)
        for (int x = 0; x < halves.width(); ++x) // dots of a pixel on the left
            halves.setPixel(x, y, x < 640 ? ((x + y) % 2 ? 2 : 0) : 1);
    for (const int side : {7, 60, 160}) {
        const auto made = codec.decodeThumbnail(encoded(halves, "png"), {side, side});
        const Bitmap& thumbnail = std::get<Bitmap>(made);
        const auto [width, height] = thumbnail.size();
        EXPECT_EQ(width, side);
        for (const int y : {0, height / 2, height - 1}) {
            EXPECT_THAT(thumbnail.pixel(0, y), IsNear(0xFF7D050Au, 6)) << side << ", " << y;
            EXPECT_THAT(thumbnail.pixel(width / 3, y), IsNear(0xFF7D050Au, 6)) << side;
            EXPECT_THAT(thumbnail.pixel(width - width / 3, y), IsNear(0x80006432u, 3)) << side;
            EXPECT_THAT(thumbnail.pixel(width - 1, y), IsNear(0x80006432u, 3)) << side;
        }
    }
}

TEST_F(QtImageCodecTest, TurnsAThumbnailAsItsOrientationSays)
{
    QImage image(64, 32, QImage::Format_RGB32);
    image.fill(Qt::red);
    const std::string turned = withOrientation(encoded(image, "jpeg", 100), 6);
    const auto made = codec.decodeThumbnail(turned, {16, 16});
    EXPECT_EQ(std::get<Bitmap>(made).size(), (PixelSize{8, 16}));
}

// What is refused

TEST_F(QtImageCodecTest, RefusesSidesOfZero)
{
    EXPECT_EQ(error(pngHead(0, 0) + chunk("IEND", "")), ImageError::damaged);
    EXPECT_EQ(error(pngHead(5, 0) + chunk("IEND", "")), ImageError::damaged);
}

TEST_F(QtImageCodecTest, RefusesPicturesThatAreTooLargeByTheirHeadAlone)
{
    for (const auto& [width, height] : std::vector<std::pair<std::uint32_t, std::uint32_t>>{
             {30000, 30000}, {40000, 1}, {1, 40000}, {0xFFFFFFFFu, 0xFFFFFFFFu}, {8193, 8192}}) {
        const std::string head = pngHead(width, height);
        EXPECT_EQ(error(head), ImageError::tooLarge);
        EXPECT_EQ(std::get<ImageError>(codec.pixelSize(head)), ImageError::tooLarge);
    }
    std::string jpeg = encoded(QImage(8, 8, QImage::Format_RGB32), "jpeg");
    const auto frame = jpeg.find("\xFF\xC0");
    ASSERT_NE(frame, std::string::npos);
    jpeg.replace(frame + 5, 4, "\x75\x30\x75\x30");
    EXPECT_EQ(error(jpeg), ImageError::tooLarge);
}

TEST_F(QtImageCodecTest, KnowsTheSizeOfPicturesUpToTheLimits)
{
    const PixelSize sizes[] = {{8192, 8192}, {32767, 1}, {1, 32767}};
    for (const PixelSize size : sizes)
        EXPECT_EQ(
            std::get<PixelSize>(codec.pixelSize(pngHead(
                static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height)))),
            size);
    for (const auto& head : {pngHead(32768, 1), pngHead(1, 32768)})
        EXPECT_EQ(std::get<ImageError>(codec.pixelSize(head)), ImageError::tooLarge);
}

// Zeros of the system's, which take no memory until they are written.
class ManyBytes {
public:
    explicit ManyBytes(std::size_t count)
        : count(count)
        , start(::mmap(nullptr, count, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        EXPECT_NE(start, MAP_FAILED);
    }
    ~ManyBytes() { ::munmap(start, count); }
    ManyBytes(const ManyBytes&) = delete;
    ManyBytes& operator=(const ManyBytes&) = delete;

    std::string_view view() const { return {static_cast<const char*>(start), count}; }

private:
    std::size_t count;
    void* start;
};

TEST_F(QtImageCodecTest, LooksIntoAFileUpToTheLimitOfItsBytes)
{
    const ManyBytes most(imageLimits::fileBytes);
    EXPECT_EQ(std::get<ImageError>(codec.decode(most.view())), ImageError::unknownFormat);
    const ManyBytes tooMany(imageLimits::fileBytes + 1);
    EXPECT_EQ(std::get<ImageError>(codec.decode(tooMany.view())), ImageError::tooLarge);
}

TEST_F(QtImageCodecTest, RefusesAPictureWhoseDataIsMissing)
{
    EXPECT_EQ(error(pngHead(10, 10) + chunk("IEND", "")), ImageError::damaged);
    EXPECT_EQ(
        error(pngHead(10, 10) + chunk("IDAT", "not deflated") + chunk("IEND", "")),
        ImageError::damaged);
    EXPECT_EQ(error("\xFF\xD8\xFF\xD9"), ImageError::damaged);
}

TEST_F(QtImageCodecTest, TakesAJpegForCompleteOnlyWithItsData)
{
    const std::string whole = encoded(QImage(8, 8, QImage::Format_RGB32), "jpeg");
    EXPECT_TRUE(isCompleteImageFile(whole, ImageFileFormat::jpeg));
    const std::string endOfImage = "\xFF\xD9";
    const std::string withoutScan = whole.substr(0, whole.find("\xFF\xDA")) + endOfImage;
    EXPECT_FALSE(isCompleteImageFile(withoutScan, ImageFileFormat::jpeg));
    EXPECT_EQ(error(withoutScan), ImageError::damaged);
}

TEST_F(QtImageCodecTest, TakesNoThumbnailForThePicture)
{
    const std::string whole = encoded(QImage(40, 30, QImage::Format_RGB32), "jpeg");
    const std::string thumbnail = encoded(QImage(8, 6, QImage::Format_RGB32), "jpeg");
    const auto length = static_cast<std::uint32_t>(thumbnail.size() + 2);
    const std::string segment = "\xFF\xE1" + bigEndian(length).substr(2) + thumbnail;
    const std::string both = whole.substr(0, 2) + segment + whole.substr(2);
    EXPECT_EQ(std::get<PixelSize>(codec.pixelSize(both)), (PixelSize{40, 30}));
    EXPECT_EQ(decoded(both).size(), (PixelSize{40, 30}));
    const std::string cutOff = both.substr(0, both.size() - 2);
    EXPECT_FALSE(isCompleteImageFile(cutOff, ImageFileFormat::jpeg));
    const std::string withoutPicture = both.substr(0, 2 + segment.size());
    EXPECT_EQ(std::get<ImageError>(codec.pixelSize(withoutPicture)), ImageError::damaged);
}

TEST_F(QtImageCodecTest, PassesOverMarkersWithoutAMeaning)
{
    const std::string whole = encoded(QImage(40, 30, QImage::Format_RGB32), "jpeg");
    const auto frame = whole.find("\xFF\xC0");
    ASSERT_NE(frame, std::string::npos);
    for (const char* inserted : {"\xFF", "\xFF\xFF", "\xFF\x01", "\xFF\xD0", "\xFF\xD7"}) {
        const std::string bytes = whole.substr(0, frame) + inserted + whole.substr(frame);
        EXPECT_EQ(std::get<PixelSize>(codec.pixelSize(bytes)), (PixelSize{40, 30})) << inserted;
        EXPECT_TRUE(isCompleteImageFile(bytes, ImageFileFormat::jpeg)) << inserted;
    }
}

TEST_F(QtImageCodecTest, LooksForTheSizeBeforeTheDataAlone)
{
    const std::string whole = encoded(QImage(40, 30, QImage::Format_RGB32), "jpeg");
    const std::string scan = "\xFF\xDA" + std::string("\0\x02", 2);
    for (const std::string& before : {std::string("\xFF\xD9"), scan})
        EXPECT_EQ(
            std::get<ImageError>(codec.pixelSize(whole.substr(0, 2) + before + whole.substr(2))),
            ImageError::damaged);
}

TEST_F(QtImageCodecTest, RefusesAPngWithAFlippedBitInItsData)
{
    QImage image(64, 64, QImage::Format_RGB32);
    for (int i = 0; i < 64 * 64; ++i)
        image.setPixel(i % 64, i / 64, static_cast<uint>(i) * 2654435761u);
    std::string bytes = encoded(image, "png");
    bytes[bytes.find("IDAT") + 1000] ^= 0x10;
    EXPECT_EQ(error(bytes), ImageError::damaged);
}

TEST_F(QtImageCodecTest, ReadsWhatIsFollowedByOtherBytes)
{
    const QImage image(8, 8, QImage::Format_RGB32);
    for (const char* format : {"png", "jpeg"})
        EXPECT_EQ(decoded(encoded(image, format) + "more").size(), (PixelSize{8, 8})) << format;
}

TEST_F(QtImageCodecTest, ReadsATallPictureOfManyPixels)
{
    Bitmap bitmap({1, 32767});
    bitmap.row(32766)[0] = 0xFF123456u;
    EXPECT_EQ(decoded(*codec.encodePng(bitmap)), bitmap);
}

// What is written

// The names of a PNG's chunks, in order, each once.
std::vector<std::string> chunkNames(const std::string& png)
{
    std::vector<std::string> names;
    for (std::size_t at = pngSignature.size(); at + 8 <= png.size();) {
        std::uint32_t length = 0;
        for (std::size_t i = 0; i < 4; ++i)
            length = length << 8 | static_cast<unsigned char>(png[at + i]);
        if (const auto name = png.substr(at + 4, 4); names.empty() || names.back() != name)
            names.push_back(name);
        at += length + 12;
    }
    return names;
}

TEST_F(QtImageCodecTest, WritesNoMetadataOfTheOldFile)
{
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(QColor(1, 2, 3, 100));
    image.setText("Comment", "the hidden content");
    image.setColorSpace(QColorSpace(QColorSpace::DisplayP3));
    const std::string png = encoded(image, "png") + "the hidden content";
    ASSERT_THAT(chunkNames(png), testing::Contains("iCCP"));
    const std::string written = *codec.encodePng(decoded(png));
    EXPECT_THAT(chunkNames(written), testing::ElementsAre("IHDR", "pHYs", "IDAT", "IEND"));

    const std::string jpeg = withOrientation(encoded(image, "jpeg"), 6) + "the hidden content";
    ASSERT_NE(jpeg.find("Exif"), std::string::npos);
    const std::string rewritten = *codec.encodeJpeg(decoded(jpeg), 0.85);
    for (const char* trace : {"Exif", "ICC_PROFILE", "Comment", "hidden", "\xFF\xFE"})
        EXPECT_EQ(rewritten.find(trace), std::string::npos) << trace;
    EXPECT_TRUE(rewritten.ends_with("\xFF\xD9"));
}

TEST_F(QtImageCodecTest, WritesAnAlphaChannelOnlyWhereOneIsNeeded)
{
    constexpr std::size_t colorType = 25;
    Bitmap bitmap({2, 1});
    EXPECT_EQ(codec.encodePng(bitmap)->at(colorType), 6);
    bitmap.row(0)[0] = bitmap.row(0)[1] = 0xFF010203u;
    EXPECT_EQ(codec.encodePng(bitmap)->at(colorType), 2);
    EXPECT_EQ(codec.encodePng(bitmap)->at(colorType - 1), 8) << "bits a channel";
}

TEST_F(QtImageCodecTest, LaysTransparencyOverTheBackdropInAJpeg)
{
    Bitmap bitmap({16, 16});
    for (int y = 0; y < 16; ++y)
        std::fill_n(bitmap.row(y) + 8, 8, 0x80800000u);
    const Bitmap written = decoded(*codec.encodeJpeg(bitmap, 1));
    EXPECT_THAT(written.pixel(3, 8), IsNear(0xFF0D0D0Du, 4));
    EXPECT_THAT(written.pixel(12, 8), IsNear(0xFF860606u, 6));
}

TEST_F(QtImageCodecTest, WritesBetterJpegsAtHigherQuality)
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    for (int i = 0; i < 64 * 64; ++i)
        image.setPixel(i % 64, i / 64, 0xFF000000u | static_cast<uint>(i) * 2654435761u >> 8);
    Bitmap bitmap({64, 64});
    QImage over = imageOver(bitmap);
    std::copy_n(image.constBits(), image.sizeInBytes(), over.bits());
    const auto size = [&](double quality) { return codec.encodeJpeg(bitmap, quality)->size(); };
    EXPECT_LT(size(0.1), size(0.85));
    EXPECT_LT(size(0.85), size(1));
    EXPECT_EQ(
        *codec.encodeJpeg(bitmap, 0.85),
        encoded(image.convertToFormat(QImage::Format_RGB32), "jpeg", 85));
}

// Files

TEST_F(QtImageCodecTest, LoadsAFileOrSaysWhyNot)
{
    headless::Desktop desktop;
    desktop.files.create("/a.png", *codec.encodePng(Bitmap({3, 2})));
    desktop.files.create("/b.png", "text");
    EXPECT_EQ(
        std::get<Bitmap>(loadImage(desktop.files, codec, "/a.png")).size(), (PixelSize{3, 2}));
    EXPECT_EQ(
        std::get<ImageError>(loadImage(desktop.files, codec, "/b.png")), ImageError::unknownFormat);
    EXPECT_EQ(
        std::get<ImageError>(loadImage(desktop.files, codec, "/c.png")), ImageError::unreadable);
}

} // namespace
} // namespace tallowbay::qt
