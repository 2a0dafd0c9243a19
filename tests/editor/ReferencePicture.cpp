#include "editor/ReferencePicture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tallowbay::test {

namespace {

constexpr int samplesPerSide = 16;

bool within(const Rect& rect, Point point)
{
    return point.x >= rect.minX() && point.x < rect.maxX() && point.y >= rect.minY()
        && point.y < rect.maxY();
}

Rect grown(const Rect& rect, double by)
{
    return {
        {rect.minX() - by, rect.minY() - by},
        {rect.size.width + 2 * by, rect.size.height + 2 * by}};
}

// Which side of the line from a to b the point is on.
double side(Point a, Point b, Point point)
{
    return (b.x - a.x) * (point.y - a.y) - (b.y - a.y) * (point.x - a.x);
}

bool withinTriangle(Point a, Point b, Point c, Point point)
{
    const double first = side(a, b, point);
    const double second = side(b, c, point);
    const double third = side(c, a, point);
    return (first >= 0 && second >= 0 && third >= 0) || (first <= 0 && second <= 0 && third <= 0);
}

double distanceToLine(Point start, Point end, Point point)
{
    const double length = std::hypot(end.x - start.x, end.y - start.y);
    if (length == 0)
        return std::hypot(point.x - start.x, point.y - start.y);
    const Point unit{(end.x - start.x) / length, (end.y - start.y) / length};
    const double along = (point.x - start.x) * unit.x + (point.y - start.y) * unit.y;
    const double bounded = std::clamp(along, 0.0, length);
    return std::hypot(point.x - start.x - bounded * unit.x, point.y - start.y - bounded * unit.y);
}

} // namespace

ReferencePicture::ReferencePicture(PixelSize size, double pixelsPerUnit, Color background)
    : size(size)
    , pixelsPerUnit(pixelsPerUnit)
    , pixels(static_cast<std::size_t>(size.width * size.height), background)
{
}

void ReferencePicture::lay(const Rect& bounds, const Inside& inside, Color color)
{
    const auto pixel = [&](double units, int side) {
        return static_cast<int>(std::clamp<double>(units * pixelsPerUnit, 0, side));
    };
    const int lastRow = pixel(size.height / pixelsPerUnit - bounds.minY() + 1, size.height);
    const int lastColumn = pixel(bounds.maxX() + 1, size.width);
    for (int y = pixel(size.height / pixelsPerUnit - bounds.maxY() - 1, size.height); y < lastRow;
         ++y) {
        for (int x = pixel(bounds.minX() - 1, size.width); x < lastColumn; ++x) {
            int hits = 0;
            for (int sample = 0; sample < samplesPerSide * samplesPerSide; ++sample) {
                const double left = x + (sample % samplesPerSide + 0.5) / samplesPerSide;
                const double top = y + (sample / samplesPerSide + 0.5) / samplesPerSide;
                hits += inside({left / pixelsPerUnit, (size.height - top) / pixelsPerUnit});
            }
            const double share = color.alpha * hits / (samplesPerSide * samplesPerSide);
            Color& pixel = pixels[static_cast<std::size_t>(y * size.width + x)];
            pixel.red += (color.red - pixel.red) * share;
            pixel.green += (color.green - pixel.green) * share;
            pixel.blue += (color.blue - pixel.blue) * share;
        }
    }
}

void ReferencePicture::fillRect(Rect rect, Color color)
{
    lay(
        rect, [=](Point point) { return within(rect, point); }, color);
}

void ReferencePicture::strokeRect(Rect rect, double width, Color color)
{
    const Rect outer = grown(rect, width / 2);
    const Rect inner = grown(rect, -width / 2);
    lay(
        outer, [=](Point point) { return within(outer, point) && !within(inner, point); }, color);
}

void ReferencePicture::fillCircle(Point center, double radius, Color color)
{
    lay(
        grown({center, {}}, radius),
        [=](Point p) { return std::hypot(p.x - center.x, p.y - center.y) < radius; }, color);
}

void ReferencePicture::strokeCircle(Point center, double radius, double width, Color color)
{
    lay(
        grown({center, {}}, radius + width),
        [=](Point p) {
            return std::abs(std::hypot(p.x - center.x, p.y - center.y) - radius) < width / 2;
        },
        color);
}

void ReferencePicture::arrow(Point start, Point end, double width, double headSide, Color color)
{
    const Rect bounds =
        grown(Rect{start, {end.x - start.x, end.y - start.y}}.normalized(), width + headSide);
    lay(
        bounds, [=](Point point) { return distanceToLine(start, end, point) < width / 2; }, color);
    // An equal-sided triangle whose tip is the end: its base lies at the side's length times the
    // cosine of 30 degrees behind the tip, half a side to the left and to the right.
    const double length = std::hypot(end.x - start.x, end.y - start.y);
    const Point unit{(end.x - start.x) / length, (end.y - start.y) / length};
    const double back = headSide * std::sqrt(3.0) / 2;
    const double half = headSide / 2;
    const Point left{end.x - unit.x * back - unit.y * half, end.y - unit.y * back + unit.x * half};
    const Point right{end.x - unit.x * back + unit.y * half, end.y - unit.y * back - unit.x * half};
    lay(
        bounds, [=](Point point) { return withinTriangle(end, left, right, point); }, color);
}

void ReferencePicture::checkerboard(Rect rect, double cell, Color base, Color cells)
{
    fillRect(rect, base);
    lay(
        rect,
        [=](Point point) {
            const auto column = static_cast<long>(std::floor((point.x - rect.minX()) / cell));
            const auto row = static_cast<long>(std::floor((point.y - rect.minY()) / cell));
            return within(rect, point) && (row + column) % 2 == 0;
        },
        cells);
}

void ReferencePicture::compare(const Bitmap& other, const std::function<void(int)>& each) const
{
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
            const Color& pixel = pixels[static_cast<std::size_t>(y * size.width + x)];
            const std::uint32_t word = other.pixel(x, y);
            int largest = 0;
            for (const auto& [value, shift] :
                 {std::pair{pixel.red, 16}, {pixel.green, 8}, {pixel.blue, 0}})
                largest = std::max(
                    largest,
                    std::abs(
                        static_cast<int>(word >> shift & 0xFF)
                        - static_cast<int>(std::lround(value * 255))));
            each(largest);
        }
    }
}

int ReferencePicture::largestDifference(const Bitmap& other) const
{
    int largest = 0;
    compare(other, [&](int difference) { largest = std::max(largest, difference); });
    return largest;
}

double ReferencePicture::meanDifference(const Bitmap& other) const
{
    double sum = 0;
    compare(other, [&](int difference) { sum += difference; });
    return sum / (size.width * size.height);
}

} // namespace tallowbay::test
