#include "platform/tesseract/Shapes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tallowbay::tesseract {

namespace {

// The ink of one cell, from the first to the last row that has some.
struct Picture {
    PixelSize size;
    std::vector<std::uint8_t> values;
    int top = 0; // above the baseline, in pixels
    double letter = 0; // height of a small one
    double energy = 0; // sum of the squares of the values

    int at(int x, int y) const
    {
        if (x < 0 || y < 0 || x >= size.width || y >= size.height)
            return 0;
        return values[static_cast<std::size_t>(y * size.width + x)];
    }
};

class PictureTaker {
public:
    PictureTaker(const Plane& ink, const TextLine& line)
        : ink(ink)
        , line(line)
        , width(static_cast<int>(std::lround(line.pitch)))
        , room(static_cast<int>(std::lround(0.2 * line.smallLetter)))
    {
    }

    Picture take(const Cell& cell) const
    {
        const int left = static_cast<int>(std::lround(cell.centre - width / 2.0));
        const Span rows = inkRows(left);
        Picture picture;
        picture.size = {width, rows.length()};
        picture.top = line.baseline - rows.begin;
        picture.letter = line.smallLetter;
        for (int y = rows.begin; y < rows.end; ++y) {
            for (int x = left; x < left + width; ++x) {
                picture.values.push_back(static_cast<std::uint8_t>(at(x, y)));
                picture.energy += at(x, y) * at(x, y);
            }
        }
        return picture;
    }

private:
    int at(int x, int y) const { return x < 0 || x >= ink.size.width ? 0 : ink.row(y)[x]; }

    Span inkRows(int left) const
    {
        Span rows{-1, -1};
        const int last = std::min(ink.size.height, line.rows.end + room);
        for (int y = line.rows.begin; y < last; ++y) {
            int most = 0;
            for (int x = left; x < left + width; ++x) {
                const bool atSide = x == left || x == left + width - 1;
                most = std::max(most, at(x, y) - (atSide ? neighbours : 0));
            }
            if (most < faintest)
                continue;
            rows.begin = rows.begin < 0 ? y : rows.begin;
            rows.end = y + 1;
        }
        return rows.begin < 0 ? Span{line.rows.begin, line.rows.begin} : rows;
    }

    static constexpr int faintest = 50;
    static constexpr int neighbours = 100; // ink that may reach into a cell from beside it

    const Plane& ink;
    const TextLine& line;
    const int width;
    const int room; // below the line, where an underscore may be
};

// Whether two pictures are alike but for their strength when one is moved.
bool areAlikeMoved(const Picture& one, const Picture& other, int right, int down)
{
    double product = 0;
    for (int y = 0; y < one.size.height; ++y) {
        for (int x = 0; x < one.size.width; ++x)
            product += one.at(x, y) * other.at(x - right, y - down);
    }
    if (product * product < 0.94 * one.energy * other.energy)
        return false;
    const double strength = product / other.energy;
    for (int y = std::min(0, down); y < std::max(one.size.height, other.size.height + down); ++y) {
        for (int x = 0; x < one.size.width; ++x) {
            // The outer columns may be a neighbour's.
            const bool atSide = x == 0 || x == one.size.width - 1;
            if (std::abs(one.at(x, y) - strength * other.at(x - right, y - down))
                > (atSide ? 120 : 60))
                return false;
        }
    }
    return true;
}

bool areAlike(const Picture& one, const Picture& other)
{
    if (one.energy == 0 || other.energy == 0 || one.size.width != other.size.width
        || std::abs(one.size.height - other.size.height) > 1
        || std::abs(std::log(one.energy / other.energy)) > 0.7)
        return false;
    // Where a line's letters all have tails its baseline is not known well.
    const bool tall = one.size.height >= 1.1 * one.letter;
    if (std::abs(one.top - other.top) > (tall ? 0.5 * one.letter : 1))
        return false;
    for (const int right : {0, 1, -1}) {
        for (const int down : {0, 1, -1}) {
            if (areAlikeMoved(one, other, right, down))
                return true;
        }
    }
    return false;
}

} // namespace

std::vector<std::vector<int>> shapesOf(const Plane& ink, const std::vector<TextLine>& lines)
{
    std::vector<Picture> known;
    std::vector<std::vector<int>> shapes;
    for (const TextLine& line : lines) {
        const PictureTaker taker(ink, line);
        shapes.emplace_back();
        for (const Cell& cell : line.cells) {
            Picture picture = taker.take(cell);
            const auto same = std::ranges::find_if(
                known, [&picture](const Picture& one) { return areAlike(one, picture); });
            shapes.back().push_back(static_cast<int>(same - known.begin()));
            if (same == known.end())
                known.push_back(std::move(picture));
        }
    }
    return shapes;
}

} // namespace tallowbay::tesseract
