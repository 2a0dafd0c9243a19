#include "platform/tesseract/LineFinder.h"

#include <algorithm>
#include <utility>

namespace tallowbay::tesseract {

namespace {

// Maximal spans of places for which the test holds.
template <typename Test> std::vector<Span> spansWhere(Span range, Test test)
{
    std::vector<Span> spans;
    for (int at = range.begin; at < range.end; ++at) {
        if (!test(at))
            continue;
        if (spans.empty() || spans.back().end != at)
            spans.push_back({at, at});
        spans.back().end = at + 1;
    }
    return spans;
}

} // namespace

bool rowHasInk(const Plane& ink, int y, Span columns)
{
    const auto* row = ink.row(y);
    return std::any_of(row + columns.begin, row + columns.end, [](std::uint8_t value) {
        return value >= solidInk;
    });
}

std::vector<Span> inkColumns(const Plane& ink, const Area& area)
{
    std::vector<bool> inked(static_cast<std::size_t>(ink.size.width));
    for (int y = area.rows.begin; y < area.rows.end; ++y) {
        for (int x = area.columns.begin; x < area.columns.end; ++x) {
            if (ink.row(y)[x] >= solidInk)
                inked[static_cast<std::size_t>(x)] = true;
        }
    }
    return spansWhere(area.columns, [&](int x) { return inked[static_cast<std::size_t>(x)]; });
}

namespace {

int inkInRow(const Plane& ink, int y, Span columns)
{
    const auto* row = ink.row(y);
    return static_cast<int>(
        std::count_if(row + columns.begin, row + columns.end, [](std::uint8_t value) {
            return value >= solidInk;
        }));
}

// The parts of a line that no ink connects: dots, accents, a row of commas.
std::vector<Span> joinedParts(const std::vector<Span>& strips, int letterHeight)
{
    std::vector<Span> joined;
    for (const Span strip : strips) {
        if (!joined.empty()) {
            Span& last = joined.back();
            const bool small = std::min(last.length(), strip.length()) < letterHeight * 0.6;
            const bool near = strip.begin - last.end <= letterHeight * 0.5;
            if (small && near && strip.end - last.begin <= letterHeight * 2.4) {
                last.end = strip.end;
                continue;
            }
        }
        joined.push_back(strip);
    }
    return joined;
}

// The page cut into lines, recursively.
class LineFinder {
public:
    LineFinder(const Plane& ink, int letterHeight)
        : ink(ink)
        , letterHeight(letterHeight)
    {
    }

    void find(const Area& area)
    {
        if (const int cut = gutterBetweenColumns(area); cut > 0) {
            find({{area.columns.begin, cut}, area.rows});
            find({{cut, area.columns.end}, area.rows});
            return;
        }
        for (const Span rows : stripsOf(area)) {
            const Area strip{area.columns, rows};
            if (rows.length() <= tallest())
                add(strip);
            else if (!cutAtThinnestRows(strip, 0.12) && !cutAtGutter(strip))
                cutAtThinnestRows(strip, 1);
        }
    }

    std::vector<Area> lines;

private:
    int tallest() const { return static_cast<int>(letterHeight * 2.9); }

    void add(const Area& area)
    {
        const auto runs = inkColumns(ink, area);
        if (!runs.empty() && !isBar(area, runs))
            lines.push_back(area);
    }

    // A block of colour and no text.
    bool isBar(const Area& area, const std::vector<Span>& runs) const
    {
        if (runs.size() > 2 || runs.front().length() < 8 * letterHeight)
            return false;
        std::int64_t inked = 0;
        for (int y = area.rows.begin; y < area.rows.end; ++y)
            inked += inkInRow(ink, y, runs.front());
        return inked * 10 >= std::int64_t{runs.front().length()} * area.rows.length() * 9;
    }

    std::vector<Span> stripsOf(const Area& area) const
    {
        return joinedParts(
            spansWhere(area.rows, [&](int y) { return rowHasInk(ink, y, area.columns); }),
            letterHeight);
    }

    // The middle of the widest blank strip from top to bottom; 0 if it is no wider than that.
    int widestGutter(const Area& area, int widest) const
    {
        const auto runs = inkColumns(ink, area);
        int cut = 0;
        for (std::size_t at = 1; at < runs.size(); ++at) {
            const int gap = runs[at].begin - runs[at - 1].end;
            if (gap > widest) {
                widest = gap;
                cut = runs[at - 1].end + gap / 2;
            }
        }
        return cut;
    }

    // Where to cut columns that are to be read one after the other: their lines are not level, or
    // both are full of running text. The cells of a table are neither. 0 if there are none.
    int gutterBetweenColumns(const Area& area) const
    {
        const int cut = widestGutter(area, letterHeight * 2);
        if (cut == 0)
            return 0;
        const Area left{{area.columns.begin, cut}, area.rows};
        const Area right{{cut, area.columns.end}, area.rows};
        const auto lefts = stripsOf(left);
        const auto rights = stripsOf(right);
        if (!areLines(lefts) || !areLines(rights))
            return 0;
        const auto fewer = static_cast<std::ptrdiff_t>(std::min(lefts.size(), rights.size()));
        const bool level = levelCount(lefts, rights) * 2 >= fewer;
        return level && !(isRunningText(left, lefts) && isRunningText(right, rights)) ? 0 : cut;
    }

    // Whether these are some lines of text, each by itself.
    bool areLines(const std::vector<Span>& strips) const
    {
        return strips.size() >= 3 && std::ranges::all_of(strips, [this](Span strip) {
                   return strip.length() >= letterHeight * 0.8 && strip.length() <= tallest();
               });
    }

    // How many of the lines have one on the other side at the same height.
    std::ptrdiff_t levelCount(const std::vector<Span>& lefts, const std::vector<Span>& rights) const
    {
        return std::count_if(lefts.begin(), lefts.end(), [&](Span one) {
            return std::any_of(rights.begin(), rights.end(), [&](Span other) {
                return std::min(one.end, other.end) - std::max(one.begin, other.begin)
                    > 0.6 * std::min(one.length(), other.length());
            });
        });
    }

    bool isRunningText(const Area& area, const std::vector<Span>& strips) const
    {
        std::int64_t wide = 0;
        for (const Span rows : strips) {
            const auto runs = inkColumns(ink, {area.columns, rows});
            wide += runs.back().end - runs.front().begin >= letterHeight * 30;
        }
        return strips.size() >= 4 && wide * 4 >= static_cast<std::int64_t>(strips.size()) * 3;
    }

    bool cutAtGutter(const Area& area)
    {
        const int cut = widestGutter(area, letterHeight * 2);
        if (cut == 0)
            return false;
        find({{area.columns.begin, cut}, area.rows});
        find({{cut, area.columns.end}, area.rows});
        return true;
    }

    // Lines that touch: cut where there is least ink, a line's height apart. False, and nothing is
    // done, if more than that share of the usual ink is cut through.
    bool cutAtThinnestRows(const Area& area, double share)
    {
        std::vector<int> profile;
        for (int y = area.rows.begin; y < area.rows.end; ++y)
            profile.push_back(inkInRow(ink, y, area.columns));
        std::vector<int> sorted = profile;
        std::sort(sorted.begin(), sorted.end());
        const double most = share * sorted[sorted.size() * 3 / 4];
        std::vector<int> cuts{0};
        while (static_cast<int>(profile.size()) - cuts.back() > tallest()) {
            const auto first = profile.begin() + cuts.back() + static_cast<int>(letterHeight * 1.4);
            const auto last = profile.begin()
                + std::min<int>(static_cast<int>(profile.size()), cuts.back() + tallest());
            const auto thinnest = std::min_element(first, last);
            if (*thinnest > most)
                return false;
            cuts.push_back(static_cast<int>(thinnest - profile.begin()));
        }
        cuts.push_back(static_cast<int>(profile.size()));
        for (std::size_t at = 1; at < cuts.size(); ++at)
            add({area.columns, {area.rows.begin + cuts[at - 1], area.rows.begin + cuts[at]}});
        return true;
    }

    const Plane& ink;
    const int letterHeight;
};

} // namespace

std::vector<Area> findLineAreas(const Plane& ink, int letterHeight)
{
    LineFinder finder(ink, letterHeight);
    finder.find({{0, ink.size.width}, {0, ink.size.height}});
    return std::move(finder.lines);
}

} // namespace tallowbay::tesseract
