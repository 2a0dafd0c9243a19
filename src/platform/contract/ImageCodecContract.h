#pragma once

#include "platform/ImageCodec.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// Every image codec keeps its header's promises. A backend is one that can be made without
// arguments.
template <typename Codec> class ImageCodecContract : public testing::Test {
protected:
    // Opaque, with a different colour at every pixel.
    static Bitmap pattern(PixelSize size)
    {
        Bitmap bitmap(size);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x)
                bitmap.row(y)[x] = 0xFF000000u | static_cast<std::uint32_t>(x * 7 % 256) << 16
                    | static_cast<std::uint32_t>(y * 11 % 256) << 8
                    | static_cast<std::uint32_t>((x + y) % 256);
        return bitmap;
    }
    static std::optional<ImageError> error(const std::variant<Bitmap, ImageError>& result)
    {
        const auto* found = std::get_if<ImageError>(&result);
        return found ? std::optional(*found) : std::nullopt;
    }

    Codec codec;
};

TYPED_TEST_SUITE_P(ImageCodecContract);

TYPED_TEST_P(ImageCodecContract, GivesBackThePixelsOfAPng)
{
    for (const PixelSize size : {PixelSize{1, 1}, PixelSize{13, 7}, PixelSize{300, 1}}) {
        Bitmap bitmap = this->pattern(size);
        bitmap.row(0)[0] = 0x80402000;
        const auto bytes = this->codec.encodePng(bitmap);
        ASSERT_TRUE(bytes);
        EXPECT_EQ(std::get<PixelSize>(this->codec.pixelSize(*bytes)), size);
        EXPECT_EQ(std::get<Bitmap>(this->codec.decode(*bytes)), bitmap);
    }
}

TYPED_TEST_P(ImageCodecContract, GivesBackTheSizeOfAJpeg)
{
    const auto bytes = this->codec.encodeJpeg(this->pattern({13, 7}), 0.85);
    ASSERT_TRUE(bytes);
    const PixelSize expected{13, 7};
    EXPECT_EQ(std::get<PixelSize>(this->codec.pixelSize(*bytes)), expected);
    EXPECT_EQ(std::get<Bitmap>(this->codec.decode(*bytes)).size(), expected);
}

TYPED_TEST_P(ImageCodecContract, RefusesWhatIsNoPicture)
{
    for (const std::string_view bytes : {"", "G", "GIF89a", "<svg/>", "no picture at all"}) {
        EXPECT_EQ(this->error(this->codec.decode(bytes)), ImageError::unknownFormat);
        EXPECT_EQ(std::get<ImageError>(this->codec.pixelSize(bytes)), ImageError::unknownFormat);
    }
}

TYPED_TEST_P(ImageCodecContract, RefusesAPictureThatIsCutOffAnywhere)
{
    const auto bitmap = this->pattern({20, 20});
    for (const auto& whole : {this->codec.encodePng(bitmap), this->codec.encodeJpeg(bitmap, 0.85)})
        for (std::size_t length = 0; length < whole->size(); ++length)
            EXPECT_TRUE(this->error(this->codec.decode(whole->substr(0, length)))) << length;
}

TYPED_TEST_P(ImageCodecContract, ScalesAThumbnailIntoTheBox)
{
    const auto scaled = [this](PixelSize picture, PixelSize box) {
        const auto bytes = this->codec.encodePng(this->pattern(picture));
        return std::get<Bitmap>(this->codec.decodeThumbnail(*bytes, box)).size();
    };
    EXPECT_EQ(scaled({80, 40}, {20, 20}), (PixelSize{20, 10}));
    EXPECT_EQ(scaled({40, 80}, {20, 20}), (PixelSize{10, 20}));
    EXPECT_EQ(scaled({80, 40}, {400, 10}), (PixelSize{20, 10}));
    EXPECT_EQ(scaled({300, 1}, {30, 30}), (PixelSize{30, 1})) << "no side is lost";
    EXPECT_EQ(scaled({8, 4}, {0, -1}), (PixelSize{1, 1}));
}

TYPED_TEST_P(ImageCodecContract, LeavesASmallPictureAsItIsInAThumbnail)
{
    const auto bitmap = this->pattern({13, 7});
    const auto bytes = this->codec.encodePng(bitmap);
    for (const PixelSize box : {PixelSize{13, 7}, PixelSize{100, 100}})
        EXPECT_EQ(std::get<Bitmap>(this->codec.decodeThumbnail(*bytes, box)), bitmap);
}

TYPED_TEST_P(ImageCodecContract, MakesNoThumbnailOfWhatItDoesNotDecode)
{
    EXPECT_EQ(
        this->error(this->codec.decodeThumbnail("no picture at all", {9, 9})),
        ImageError::unknownFormat);
    for (const auto& whole :
         {this->codec.encodePng(this->pattern({20, 20})),
          this->codec.encodeJpeg(this->pattern({20, 20}), 0.85)})
        for (std::size_t length = 1; length < whole->size(); length += 7)
            EXPECT_TRUE(this->error(this->codec.decodeThumbnail(whole->substr(0, length), {9, 9})))
                << length;
}

REGISTER_TYPED_TEST_SUITE_P(
    ImageCodecContract, GivesBackThePixelsOfAPng, GivesBackTheSizeOfAJpeg, RefusesWhatIsNoPicture,
    RefusesAPictureThatIsCutOffAnywhere, ScalesAThumbnailIntoTheBox,
    LeavesASmallPictureAsItIsInAThumbnail, MakesNoThumbnailOfWhatItDoesNotDecode);

} // namespace tallowbay::contract
