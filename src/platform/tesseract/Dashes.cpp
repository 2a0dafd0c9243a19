#include "platform/tesseract/Dashes.h"

#include "platform/tesseract/LineFinder.h"

#include <algorithm>
#include <cmath>

namespace tallowbay::tesseract {

namespace {

class DashFinder {
public:
    DashFinder(const Plane& ink, const TextLine& line, const std::vector<Component>& smallLetters)
        : ink(ink)
        , line(line)
        , unit(meanHeight(smallLetters))
    {
    }

    std::vector<Dash> find() const
    {
        std::vector<Dash> dashes;
        for (const Span run : line.runs) {
            int begin = run.begin;
            for (int x = run.begin; x <= run.end; ++x) {
                if (x < run.end && isFlat(x))
                    continue;
                if (x > begin)
                    add({begin, x}, dashes);
                begin = x + 1;
            }
        }
        return dashes;
    }

private:
    // More exact than the line's, which is a whole number.
    double meanHeight(const std::vector<Component>& smallLetters) const
    {
        double sum = 0;
        for (const Component& letter : smallLetters)
            sum += letter.height();
        return smallLetters.empty() ? line.smallLetter
                                    : sum / static_cast<double>(smallLetters.size());
    }

    // Whether all ink of the column is a thin stroke half way up a small letter.
    bool isFlat(int x) const
    {
        int top = -1;
        int bottom = -1;
        for (int y = line.rows.begin; y < line.rows.end; ++y) {
            if (ink.row(y)[x] < solidInk)
                continue;
            top = top < 0 ? y : top;
            bottom = y + 1;
        }
        const double middle = line.baseline - (top + bottom) / 2.0;
        return bottom - top <= std::max(2.0, 0.34 * line.smallLetter)
            && middle > 0.25 * line.smallLetter && middle < 0.8 * line.smallLetter;
    }

    void add(Span columns, std::vector<Dash>& dashes) const
    {
        const auto strengths = strengthsOf(columns);
        auto sorted = strengths;
        std::sort(sorted.begin(), sorted.end());
        const int usual = sorted[sorted.size() / 2];
        double length = 0;
        for (const int strength : strengths)
            length += std::min(1.0, static_cast<double>(strength) / usual);
        if (length < 0.3 * unit || !isEven(strengths, usual))
            return;
        const std::string_view text = nameOf(length);
        if (!text.empty())
            dashes.push_back({text, columns});
    }

    // The rows with ink half way between its ends, and their soft edges.
    Span rowsOf(Span columns) const
    {
        const int x = (columns.begin + columns.end) / 2;
        Span rows{line.rows.end, line.rows.begin};
        for (int y = line.rows.begin; y < line.rows.end; ++y) {
            if (ink.row(y)[x] < solidInk)
                continue;
            rows.begin = std::min(rows.begin, std::max(0, y - 1));
            rows.end = std::min(ink.size.height, y + 2);
        }
        return rows;
    }

    // The ink of each column from one before to one after, whose soft ends count for what they
    // have.
    std::vector<int> strengthsOf(Span columns) const
    {
        const Span rows = rowsOf(columns);
        std::vector<int> strengths;
        for (int x = columns.begin - 1; x <= columns.end; ++x) {
            const bool beside = x < columns.begin || x == columns.end;
            if (x < 0 || x >= ink.size.width || (beside && columnHasInk(x)))
                continue;
            int sum = 0;
            for (int y = rows.begin; y < rows.end; ++y)
                sum += ink.row(y)[x];
            strengths.push_back(sum);
        }
        return strengths;
    }

    bool columnHasInk(int x) const
    {
        for (int y = line.rows.begin; y < line.rows.end; ++y) {
            if (ink.row(y)[x] >= solidInk)
                return true;
        }
        return false;
    }

    // Two hyphens that touch are not.
    static bool isEven(const std::vector<int>& strengths, int usual)
    {
        return strengths.size() < 6
            || std::all_of(strengths.begin() + 2, strengths.end() - 2, [usual](int strength) {
                   return strength * 10 >= usual * 8;
               });
    }

    // None where two are as likely; a pixel is much in a small letter.
    std::string_view nameOf(double length) const
    {
        if (line.pitch > 0)
            return length > 0.88 * line.pitch && length < 1.2 * line.pitch ? "–" : "";
        if (length < 0.62 * unit)
            return "-";
        if (length < (unit < 6.5 ? 0.8 : 0.7) * unit || length > 2.5 * unit)
            return "";
        return length < 1.4 * unit ? "–" : "—";
    }

    const Plane& ink;
    const TextLine& line;
    const double unit;
};

} // namespace

std::vector<Dash> dashesOf(
    const Plane& ink, const TextLine& line, const std::vector<Component>& smallLetters)
{
    return DashFinder(ink, line, smallLetters).find();
}

} // namespace tallowbay::tesseract
