#include "views/ui/BoxBlur.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace tallowbay::views {

namespace {

// A row or a column of pixels.
struct Line {
    QRgb* first = nullptr;
    qsizetype step = 1;
    int length = 0;

    QRgb& at(int i) const { return first[i * step]; }
    QRgb nearest(int i) const { return at(std::clamp(i, 0, length - 1)); }
};

// Divides by multiplying, which is much faster. Exact as long as the product of both stays below
// 2^32, and a blur adds up far fewer pixels.
class Divisor {
public:
    explicit Divisor(int number)
        : inverse((std::uint64_t(1) << 32) / std::uint64_t(number) + 1)
    {
    }
    int into(int sum) const { return static_cast<int>(std::uint64_t(sum) * inverse >> 32); }

private:
    std::uint64_t inverse;
};

struct Sum {
    int red = 0;
    int green = 0;
    int blue = 0;

    void add(QRgb pixel, int sign)
    {
        red += sign * qRed(pixel);
        green += sign * qGreen(pixel);
        blue += sign * qBlue(pixel);
    }
    QRgb mean(const Divisor& count) const
    {
        return qRgb(count.into(red), count.into(green), count.into(blue));
    }
};

void blurLine(const Line& line, int radius, std::vector<QRgb>& means)
{
    const Divisor count(2 * radius + 1);
    Sum sum;
    for (int i = -radius; i < radius; ++i)
        sum.add(line.nearest(i), 1);
    means.clear();
    for (int i = 0; i < line.length; ++i) {
        sum.add(line.nearest(i + radius), 1);
        means.push_back(sum.mean(count));
        sum.add(line.nearest(i - radius), -1);
    }
    for (int i = 0; i < line.length; ++i)
        line.at(i) = means[static_cast<std::size_t>(i)];
}

void blurOnce(QImage& image, int radius)
{
    std::vector<QRgb> means;
    auto* const pixels = reinterpret_cast<QRgb*>(image.bits());
    const qsizetype stride = image.bytesPerLine() / qsizetype(sizeof(QRgb));
    for (int y = 0; y < image.height(); ++y)
        blurLine({pixels + y * stride, 1, image.width()}, radius, means);
    for (int x = 0; x < image.width(); ++x)
        blurLine({pixels + x, stride, image.height()}, radius, means);
}

} // namespace

QImage blurredImage(QImage image, double deviationPixels)
{
    image.convertTo(QImage::Format_RGB32);
    // Three boxes of 2r+1 pixels have together the variance (2r+1)²/4 - 1/4.
    const double width = std::sqrt(4 * deviationPixels * deviationPixels + 1);
    const int radius = qRound((width - 1) / 2);
    if (radius < 1 || image.isNull())
        return image;
    for (int pass = 0; pass < 3; ++pass)
        blurOnce(image, radius);
    return image;
}

} // namespace tallowbay::views
