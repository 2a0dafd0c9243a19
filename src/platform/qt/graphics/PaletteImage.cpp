#include "platform/qt/graphics/PaletteImage.h"

#include <QColorSpace>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace tallowbay::qt {

namespace {

constexpr int indices = 256;

// So that the sum of a block's values fits into 16 bits, also if some blocks are longer by one.
constexpr int longestBlock = 15;

using Words = std::array<std::uint32_t, indices>;

// An index that the palette lacks, which no sound file has, means its last colour.
Words wordsOf(const QImage& colors)
{
    const auto* known = reinterpret_cast<const std::uint32_t*>(colors.constScanLine(0));
    Words words{};
    for (int index = 0; index < indices; ++index)
        words[std::size_t(index)] = known[std::min(index, colors.width() - 1)];
    return words;
}

// The four values of a word, with 16 bits each, so that they can be added as one.
std::uint64_t spread(std::uint32_t word)
{
    const std::uint64_t wide = word;
    return (wide & 0xFF) | (wide & 0xFF00) << 8 | (wide & 0xFF0000) << 16
        | (wide & 0xFF000000) << 24;
}

std::uint32_t mean(std::uint64_t sum, std::uint32_t count)
{
    std::uint32_t word = 0;
    for (int lane = 0; lane < 4; ++lane) {
        const auto value = static_cast<std::uint32_t>(sum >> 16 * lane & 0xFFFF);
        word |= (value + count / 2) / count << 8 * lane;
    }
    return word;
}

// Where each of so many blocks begins on a length, and where the last one ends.
std::vector<int> boundaries(int length, int blocks)
{
    std::vector<int> places;
    for (int block = 0; block <= blocks; ++block)
        places.push_back(static_cast<int>(std::int64_t(block) * length / blocks));
    return places;
}

// Makes one row of several.
class Reduction {
public:
    Reduction(const Words& words, std::vector<int> columns)
        : columns(std::move(columns))
        , sums(this->columns.size() - 1)
    {
        std::ranges::transform(words, values.begin(), spread);
    }

    void add(const uchar* line)
    {
        ++lines;
        for (std::size_t block = 0; block < sums.size(); ++block)
            for (int x = columns[block]; x < columns[block + 1]; ++x)
                sums[block] += values[line[x]];
    }

    void take(std::uint32_t* row)
    {
        for (std::size_t block = 0; block < sums.size(); ++block) {
            const int count = (columns[block + 1] - columns[block]) * lines;
            row[block] = mean(sums[block], static_cast<std::uint32_t>(count));
        }
        std::ranges::fill(sums, 0);
        lines = 0;
    }

private:
    std::vector<int> columns;
    std::array<std::uint64_t, indices> values{};
    std::vector<std::uint64_t> sums;
    int lines = 0;
};

} // namespace

QImage PaletteImage::colors() const
{
    const QList<QRgb> table = image.colorTable();
    QImage row(std::max(1, int(table.size())), 1, QImage::Format_ARGB32);
    row.fill(Qt::black);
    std::memcpy(row.scanLine(0), table.constData(), std::size_t(table.size()) * sizeof(QRgb));
    row.setColorSpace(image.colorSpace());
    return row;
}

Bitmap PaletteImage::painted(const QImage& colors) const
{
    const auto words = wordsOf(colors);
    Bitmap bitmap({image.width(), image.height()});
    for (int y = 0; y < image.height(); ++y) {
        const uchar* from = image.constScanLine(y);
        std::transform(
            from, from + image.width(), bitmap.row(y), [&](uchar index) { return words[index]; });
    }
    return bitmap;
}

QImage PaletteImage::reduced(const QImage& colors, PixelSize least) const
{
    const int factor = std::min(image.width() / least.width, image.height() / least.height);
    const int block = std::clamp(factor / 2, 1, longestBlock);
    QImage result(
        image.width() / block, image.height() / block, QImage::Format_ARGB32_Premultiplied);
    Reduction reduction(wordsOf(colors), boundaries(image.width(), result.width()));
    const std::vector<int> rows = boundaries(image.height(), result.height());
    for (int y = 0; y < result.height(); ++y) {
        for (int line = rows[std::size_t(y)]; line < rows[std::size_t(y) + 1]; ++line)
            reduction.add(image.constScanLine(line));
        reduction.take(reinterpret_cast<std::uint32_t*>(result.scanLine(y)));
    }
    return result;
}

} // namespace tallowbay::qt
