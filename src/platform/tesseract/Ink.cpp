#include "platform/tesseract/Ink.h"

#include "platform/tesseract/Components.h"

#include <algorithm>
#include <cstdlib>
#include <map>

namespace tallowbay::tesseract {

namespace {

constexpr int faintest = 20; // ink below this is no text but noise

int channel(std::uint32_t pixel, int shift)
{
    return static_cast<int>(pixel >> shift & 255);
}

int difference(std::uint32_t one, std::uint32_t other)
{
    return std::abs(channel(one, 16) - channel(other, 16))
        + std::abs(channel(one, 8) - channel(other, 8))
        + std::abs(channel(one, 0) - channel(other, 0));
}

// As the eye weighs them, but colours of one brightness differ, too.
std::uint8_t visibleDifference(std::uint32_t one, std::uint32_t other)
{
    return static_cast<std::uint8_t>(
        (77 * std::abs(channel(one, 16) - channel(other, 16))
         + 150 * std::abs(channel(one, 8) - channel(other, 8))
         + 29 * std::abs(channel(one, 0) - channel(other, 0)))
        >> 8);
}

// A ground is even and large and not much cut up; a big letter is even, too, but thin.
bool isGround(const Component& component, PixelSize picture)
{
    const auto box = std::int64_t{component.width()} * component.height();
    const auto pixels = std::int64_t{picture.width} * picture.height;
    const int thickness = std::min(component.width(), component.height());
    if (component.area * 20 >= pixels && thickness > 3)
        return true;
    // A margin may be narrow.
    const bool across = component.width() == picture.width || component.height() == picture.height;
    if (across && thickness > 1 && component.area * 10 >= box * 9)
        return true;
    return component.area >= 400 && thickness >= 10 && component.area * 2 >= box;
}

// For every pixel of a row the ground it lies on: its own, the one to its left, the one to its
// right, else that of the row above.
void spreadGrounds(
    const Bitmap& bitmap, const Labels& labels, const std::vector<bool>& grounds, int y,
    std::vector<std::uint32_t>& row)
{
    const int width = bitmap.size().width;
    bool found = false;
    for (int x = 0; x < width; ++x) {
        if (!grounds[static_cast<std::size_t>(labels.at(x, y))]) {
            if (found)
                row[static_cast<std::size_t>(x)] = row[static_cast<std::size_t>(x) - 1];
            continue;
        }
        const std::uint32_t ground = bitmap.pixel(x, y);
        if (!found)
            std::fill_n(row.begin(), x, ground);
        row[static_cast<std::size_t>(x)] = ground;
        found = true;
    }
}

} // namespace

Plane inkOf(const Bitmap& bitmap)
{
    const PixelSize size = bitmap.size();
    const Labels labels = labelComponents(size, [&](int x1, int y1, int x2, int y2) {
        return difference(bitmap.pixel(x1, y1), bitmap.pixel(x2, y2)) <= 6;
    });
    std::vector<bool> grounds;
    for (const Component& component : labels.components)
        grounds.push_back(isGround(component, size));
    Plane ink(size);
    std::vector<std::uint32_t> ground(static_cast<std::size_t>(size.width), 0xFFFFFFFFu);
    for (int y = 0; y < size.height; ++y) {
        spreadGrounds(bitmap, labels, grounds, y, ground);
        for (int x = 0; x < size.width; ++x)
            ink.row(y)[x] =
                visibleDifference(bitmap.pixel(x, y), ground[static_cast<std::size_t>(x)]);
    }
    return ink;
}

namespace {

bool isInk(const Plane& ink, int x, int y)
{
    return x >= 0 && y >= 0 && x < ink.size.width && y < ink.size.height
        && ink.row(y)[x] >= faintest;
}

// A rule is of one colour but for the letters that it touches; letters in a row are not.
bool isEven(const std::uint8_t* values, int count)
{
    std::vector<std::uint8_t> sorted(values, values + count);
    const auto middle = sorted.begin() + count / 2;
    std::nth_element(sorted.begin(), middle, sorted.end());
    const auto alike = std::count_if(values, values + count, [usual = *middle](std::uint8_t value) {
        return std::abs(value - usual) <= 10;
    });
    return alike * 10 >= count * 6;
}

// How many rows the ink goes on below, up to a limit.
int inkBelow(const Plane& ink, int x, int y, int limit)
{
    int rows = 0;
    while (rows < limit && isInk(ink, x, y + rows + 1))
        ++rows;
    return rows;
}

// Clears a run of one row if it belongs to a thin rule, but for the tails of letters, which go on
// below it.
void clearRun(Plane& ink, int y, Span columns)
{
    constexpr int thickest = 3;
    std::vector<int> below;
    for (int x = columns.begin; x < columns.end; ++x)
        below.push_back(inkBelow(ink, x, y, thickest));
    auto sorted = below;
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    if (*middle >= thickest)
        return;
    for (int x = columns.begin; x < columns.end; ++x) {
        if (below[static_cast<std::size_t>(x - columns.begin)] <= *middle)
            ink.row(y)[x] = 0;
    }
}

void removeHorizontalRules(Plane& ink, int shortest)
{
    const Plane before = ink;
    for (int y = 0; y < ink.size.height; ++y) {
        int begin = 0;
        for (int x = 0; x <= ink.size.width; ++x) {
            if (isInk(before, x, y))
                continue;
            if (x - begin >= shortest && isEven(before.row(y) + begin, x - begin))
                clearRun(ink, y, {begin, x});
            begin = x + 1;
        }
    }
}

void removeVerticalRules(Plane& ink, int shortest)
{
    for (int x = 0; x < ink.size.width; ++x) {
        int begin = 0;
        for (int y = 0; y <= ink.size.height; ++y) {
            if (isInk(ink, x, y))
                continue;
            if (y - begin >= shortest) {
                for (int inside = begin; inside < y; ++inside)
                    ink.row(inside)[x] = 0;
            }
            begin = y + 1;
        }
    }
}

} // namespace

void removeRules(Plane& ink, int textHeight)
{
    removeHorizontalRules(ink, std::max(40, 5 * textHeight));
    removeVerticalRules(ink, std::max(40, 5 * textHeight));
}

namespace {

// Or like some that touch; neither a speck nor a frame.
bool looksLikeALetter(const Component& part)
{
    const auto box = std::int64_t{part.width()} * part.height();
    return part.height() >= 4 && part.height() <= 100 && part.width() >= 2
        && part.width() <= 8 * part.height() && part.area * 10 >= box;
}

} // namespace

// A third of all letters, by the width they take, are not higher: dots and quotes are many at times
// but narrow.
int letterHeight(const Plane& ink)
{
    std::map<int, std::int64_t> widthOfHeight;
    std::int64_t width = 0;
    for (const Component& part : componentsOf(ink, faintest * 2)) {
        if (!looksLikeALetter(part))
            continue;
        widthOfHeight[part.height()] += part.width();
        width += part.width();
    }
    std::int64_t passed = 0;
    for (const auto& [height, itsWidth] : widthOfHeight) {
        passed += itsWidth;
        if (passed * 3 >= width)
            return height;
    }
    return 0;
}

namespace {

// The largest value within the reach on both sides of each place.
void spreadMaximum(
    const std::uint8_t* values, std::uint8_t* largest, int count, int reach, int step)
{
    for (int at = 0; at < count; ++at) {
        std::uint8_t most = 0;
        for (int near = std::max(0, at - reach); near <= std::min(count - 1, at + reach); ++near)
            most = std::max(most, values[near * step]);
        largest[at * step] = most;
    }
}

} // namespace

void levelContrast(Plane& ink, int textHeight)
{
    const PixelSize size = ink.size;
    Plane across(size);
    for (int y = 0; y < size.height; ++y)
        spreadMaximum(ink.row(y), across.row(y), size.width, 2 * textHeight, 1);
    Plane strongest(size);
    for (int x = 0; x < size.width; ++x)
        spreadMaximum(across.row(0) + x, strongest.row(0) + x, size.height, textHeight, size.width);
    for (std::size_t at = 0; at < ink.values.size(); ++at) {
        const int most = std::max<int>(strongest.values[at], faintest);
        ink.values[at] = static_cast<std::uint8_t>(ink.values[at] * 255 / most);
    }
}

} // namespace tallowbay::tesseract
