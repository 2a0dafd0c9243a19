#include "editor/AnnotationConstants.h"
#include "editor/QtFixture.h"
#include "editor/saving/AnnotationExporter.h"
#include "platform/headless/Desktop.h"

#include <cmath>
#include <random>

namespace tallowbay::test {
namespace {

// Rectangles of every kind on pictures of every kind. The test maps the rectangle to the picture
// by its own arithmetic.
class RedactionTest : public QtTest, public testing::WithParamInterface<unsigned> {
protected:
    double between(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(random);
    }
    int upTo(int high) { return std::uniform_int_distribution<int>(0, high)(random); }

    // Mostly of any size; often empty, far away or with an edge on a pixel's edge.
    Rect anyRect(Size canvas)
    {
        Rect rect{
            {between(-50, canvas.width + 50), between(-50, canvas.height + 50)},
            {between(-250, 250), between(-250, 250)}};
        switch (upTo(7)) {
        case 0:
            rect.size.width = 0;
            break;
        case 1:
            rect.size.height = between(-1, 1);
            break;
        case 2:
            rect.origin.x += 10000;
            break;
        case 3:
            rect = {
                {std::round(rect.origin.x), std::round(rect.origin.y)},
                {std::round(rect.size.width), std::round(rect.size.height)}};
            break;
        case 4:
            rect = {{-5000, -5000}, {20000, 20000}};
            break;
        default:
            break;
        }
        return rect;
    }

    struct Case {
        PixelSize size;
        Size canvas;
        Rect rect;
        double left, right, bottom, top; // in pixels of the picture
    };
    Case anyCase()
    {
        Case result{
            {1 + upTo(90), 1 + upTo(90)}, {between(110, 500), between(110, 500)}, {}, 0, 0, 0, 0};
        result.rect = anyRect(result.canvas);
        const double scale = std::min(
            (result.canvas.width - 96) / result.size.width,
            (result.canvas.height - 96) / result.size.height);
        const double originX = result.canvas.width / 2 - result.size.width * scale / 2;
        const double originY = result.canvas.height / 2 - result.size.height * scale / 2;
        result.left = (result.rect.minX() - originX) / scale;
        result.right = (result.rect.maxX() - originX) / scale;
        result.bottom = (result.rect.minY() - originY) / scale;
        result.top = (result.rect.maxY() - originY) / scale;
        return result;
    }

    // How much of a pixel lies inside of the rectangle.
    static double coverage(const Case& at, int x, int y)
    {
        const double low = at.size.height - 1 - y;
        const double width = std::min<double>(at.right, x + 1) - std::max<double>(at.left, x);
        const double height = std::min(at.top, low + 1) - std::max(at.bottom, low);
        return width > 0 && height > 0 ? width * height : 0;
    }

    // Colours that no mask has: red full, blue none.
    Bitmap anyPicture(PixelSize size, std::uint32_t alpha = 0xFF)
    {
        Bitmap bitmap(size);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x)
                bitmap.row(y)[x] = alpha << 24 | alpha << 16
                    | static_cast<std::uint32_t>(upTo(static_cast<int>(alpha))) << 8;
        return bitmap;
    }

    std::optional<std::string> written(const Bitmap& picture, const Case& at, const char* name)
    {
        headless::Desktop desktop;
        const AnnotationExporter exporter(
            desktop.files, codec, graphics,
            ImageCompressor(desktop.files, desktop.processes, desktop.resources, desktop.tools));
        const AnnotationItem blur{AnnotationTool::blur, at.rect, std::nullopt, systemYellow};
        const auto flattened = exporter.flattenAnnotation(
            std::make_shared<Bitmap>(picture), {blur}, at.canvas, imageInset);
        return exporter.encode(*flattened, name);
    }

    std::mt19937 random{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Seeds, RedactionTest, testing::Range(1u, 9u));

bool isMask(std::uint32_t word)
{
    const std::uint32_t level = word & 0xFF;
    return word == (0xFF000000u | level * 0x010101u) && level >= 31 && level <= 46;
}

TEST_P(RedactionTest, ReplacesEveryTouchedPixelAndNoOther)
{
    int covered = 0;
    for (int round = 0; round < 60; ++round) {
        const Case at = anyCase();
        const Bitmap before = anyPicture(at.size, round % 3 == 0 ? 0x80 : 0xFF);
        const auto after = std::get<Bitmap>(codec.decode(*written(before, at, "a.png")));
        for (int y = 0; y < at.size.height; ++y) {
            for (int x = 0; x < at.size.width; ++x) {
                const double share = coverage(at, x, y);
                if (share > 1e-5) {
                    ASSERT_TRUE(isMask(after.pixel(x, y)))
                        << std::hex << after.pixel(x, y) << std::dec << " at " << x << ", " << y
                        << ", covered by " << share << ": " << at.left << " to " << at.right << ", "
                        << at.bottom << " to " << at.top << " of " << at.size.width << " x "
                        << at.size.height;
                    ++covered;
                } else if (share == 0) {
                    ASSERT_EQ(after.pixel(x, y), before.pixel(x, y)) << x << ", " << y;
                }
            }
        }
    }
    EXPECT_GT(covered, 1'000);
}

TEST_P(RedactionTest, WritesTheSameFileWhateverWasHidden)
{
    int different = 0;
    for (int round = 0; round < 30; ++round) {
        const Case at = anyCase();
        const Bitmap one = anyPicture(at.size);
        Bitmap other = one;
        for (int y = 0; y < at.size.height; ++y)
            for (int x = 0; x < at.size.width; ++x)
                if (coverage(at, x, y) > 1e-5)
                    other.row(y)[x] = 0xFF0000FFu;
        different += one != other;
        EXPECT_TRUE(written(one, at, "a.png") == written(other, at, "a.png"));
        EXPECT_TRUE(written(one, at, "a.jpg") == written(other, at, "a.jpg"));
    }
    EXPECT_GT(different, 1);
}

} // namespace
} // namespace tallowbay::test
