#include "platform/tesseract/FlatStrokes.h"

#include "platform/tesseract/LineFinder.h"

#include <algorithm>
#include <numeric>

namespace tallowbay::tesseract {

namespace {

class StrokeFinder {
public:
    StrokeFinder(const Plane& ink, const TextLine& line)
        : ink(ink)
        , line(line)
    {
    }

    std::vector<FlatStroke> find() const
    {
        std::vector<FlatStroke> strokes;
        for (const Span run : line.runs) {
            int begin = run.begin;
            for (int x = run.begin; x <= run.end; ++x) {
                if (x < run.end && isFlat(x))
                    continue;
                if (x > begin)
                    strokes.push_back(measured({begin, x}));
                begin = x + 1;
            }
        }
        return strokes;
    }

    int darkest(int x) const
    {
        int most = 0;
        for (int y = line.rows.begin; isInside(x) && y < line.rows.end; ++y)
            most = std::max<int>(most, ink.row(y)[x]);
        return most;
    }

private:
    bool isInside(int x) const { return x >= 0 && x < ink.size.width; }
    bool isBlank(int x) const { return darkest(x) < solidInk; }

    // The rows from the first to the last solid ink of a column.
    Span solidRows(int x) const
    {
        Span rows{-1, -1};
        for (int y = line.rows.begin; y < line.rows.end; ++y) {
            if (ink.row(y)[x] < solidInk)
                continue;
            rows.begin = rows.begin < 0 ? y : rows.begin;
            rows.end = y + 1;
        }
        return rows;
    }

    bool isFlat(int x) const
    {
        const Span rows = solidRows(x);
        const double middle = line.baseline - (rows.begin + rows.end) / 2.0;
        return rows.length() <= std::max(2.0, 0.34 * line.smallLetter)
            && middle > 0.25 * line.smallLetter && middle < 0.8 * line.smallLetter;
    }

    FlatStroke measured(Span columns) const
    {
        Span rows = solidRows((columns.begin + columns.end) / 2);
        rows = {std::max(0, rows.begin - 1), std::min(ink.size.height, rows.end + 1)};
        std::vector<int> strengths;
        for (int x = columns.begin; x < columns.end; ++x)
            strengths.push_back(strength(x, rows));
        const int full = std::max(1, *std::max_element(strengths.begin(), strengths.end()));
        const double sum = std::accumulate(strengths.begin(), strengths.end(), 0.0)
            + softEnd(columns.begin - 1, -1, rows) + softEnd(columns.end, 1, rows);
        return {columns, sum / full, isEven(strengths, full)};
    }

    int strength(int x, Span rows) const
    {
        int sum = 0;
        for (int y = rows.begin; isInside(x) && y < rows.end; ++y)
            sum += ink.row(y)[x];
        return sum;
    }

    // Ink beside the stroke. In a narrow gap half of it is the neighbour's.
    double softEnd(int x, int step, Span rows) const
    {
        constexpr int reach = 2;
        double sum = 0;
        for (int away = 0; away < reach && isBlank(x); ++away, x += step) {
            if (!isBlank(x + step))
                return sum + strength(x, rows) / 2.0;
            if (away > 0 && !isBlank(x + 2 * step))
                return sum;
            sum += strength(x, rows);
        }
        return sum;
    }

    static bool isEven(const std::vector<int>& strengths, int full)
    {
        return strengths.size() < 4
            || std::all_of(strengths.begin() + 1, strengths.end() - 1, [full](int strength) {
                   return strength * 10 >= full * 7;
               });
    }

    const Plane& ink;
    const TextLine& line;
};

} // namespace

std::vector<FlatStroke> flatStrokesOf(const Plane& ink, const TextLine& line)
{
    return StrokeFinder(ink, line).find();
}

double inkWidth(const Plane& ink, const TextLine& line, Span run)
{
    const StrokeFinder finder(ink, line);
    const double ends = finder.darkest(run.begin - 1) + finder.darkest(run.begin)
        + finder.darkest(run.end - 1) + finder.darkest(run.end);
    return run.length() - 2 + ends / 255;
}

} // namespace tallowbay::tesseract
