#include "platform/linux/ocr/TextLines.h"

#include "platform/linux/ocr/Components.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace tallowbay::linux_desktop {

namespace {

constexpr int solid = 80; // ink that is part of a letter and not its soft edge

struct Area {
    Span columns;
    Span rows;
};

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

bool rowHasInk(const Plane& ink, int y, Span columns)
{
    const auto* row = ink.row(y);
    return std::any_of(
        row + columns.begin, row + columns.end, [](std::uint8_t value) { return value >= solid; });
}

std::vector<Span> inkColumns(const Plane& ink, const Area& area)
{
    std::vector<bool> inked(static_cast<std::size_t>(ink.size.width));
    for (int y = area.rows.begin; y < area.rows.end; ++y) {
        for (int x = area.columns.begin; x < area.columns.end; ++x) {
            if (ink.row(y)[x] >= solid)
                inked[static_cast<std::size_t>(x)] = true;
        }
    }
    return spansWhere(area.columns, [&](int x) { return inked[static_cast<std::size_t>(x)]; });
}

int inkInRow(const Plane& ink, int y, Span columns)
{
    const auto* row = ink.row(y);
    return static_cast<int>(std::count_if(
        row + columns.begin, row + columns.end, [](std::uint8_t value) { return value >= solid; }));
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

// The value that most of the others are within one of.
int mostCommon(const std::vector<int>& values)
{
    int best = 0;
    std::ptrdiff_t most = -1;
    for (const int value : values) {
        const auto near = 2 * std::count(values.begin(), values.end(), value)
            + std::count(values.begin(), values.end(), value - 1)
            + std::count(values.begin(), values.end(), value + 1);
        if (near > most) {
            most = near;
            best = value;
        }
    }
    return best;
}

// How well the centres fit a grid of that pitch: 1 is perfectly.
double fit(const std::vector<double>& centres, double pitch)
{
    std::complex<double> sum = 0;
    for (const double centre : centres)
        sum += std::polar(1.0, 2 * std::numbers::pi * centre / pitch);
    return std::abs(sum) / static_cast<double>(centres.size());
}

// How well letters fit grids of that pitch, where every stretch of text has a grid of its own.
double fit(const std::vector<std::vector<double>>& stretches, double pitch)
{
    double sum = 0;
    double letters = 0;
    for (const auto& centres : stretches) {
        const auto count = static_cast<double>(centres.size());
        sum += std::pow(fit(centres, pitch), 2) * count;
        letters += count;
    }
    return letters == 0 ? 0 : sum / letters;
}

// The width of every character if they all have the same, as in most of the lines of a page.
double pitchOf(const std::vector<std::vector<double>>& stretches, double smallLetter)
{
    std::size_t letters = 0;
    for (const auto& centres : stretches)
        letters += centres.size();
    if (letters < 12)
        return 0;
    double best = 0.55;
    double pitch = 0;
    for (double candidate = smallLetter * 0.95; candidate < smallLetter * 1.4; candidate += 0.01) {
        const double here = fit(stretches, candidate);
        if (here > best) {
            best = here;
            pitch = candidate;
        }
    }
    return pitch;
}

class LineMeasurer {
public:
    LineMeasurer(const Plane& ink, int letterHeight)
        : ink(ink)
        , letterHeight(letterHeight)
        , labels(labelComponents(ink.size, [&ink](int x1, int y1, int x2, int y2) {
            return (ink.row(y1)[x1] >= solid) == (ink.row(y2)[x2] >= solid);
        }))
    {
        for (int y = 0; y < ink.size.height; ++y) {
            for (int x = 0; x < ink.size.width; ++x) {
                const Component& part = labels.componentAt(x, y);
                if (ink.row(y)[x] >= solid && part.top == y && firstOfTop(x, y))
                    letters.push_back(part);
            }
        }
    }

    TextLine measure(const Area& area) const
    {
        TextLine line;
        line.rows = area.rows;
        line.runs = inkColumns(ink, area);
        std::vector<int> bottoms;
        std::vector<int> tops;
        for (const Component& letter : letters) {
            if (!inside(letter, area) || letter.height() < letterHeight * 0.7)
                continue;
            bottoms.push_back(letter.bottom);
            tops.push_back(letter.top);
        }
        line.baseline = bottoms.empty() ? area.rows.end : mostCommon(bottoms);
        std::vector<int> heights;
        for (const int top : tops) {
            if (line.baseline - top >= letterHeight * 0.7)
                heights.push_back(line.baseline - top);
        }
        if (!heights.empty()) {
            std::sort(heights.begin(), heights.end());
            line.smallLetter = heights[heights.size() / 5];
        }
        return line;
    }

    void findMarks(TextLine& line) const
    {
        for (const Component& part : letters) {
            const char character = markOf(part, line);
            if (character && inside(part, {line.columns(), line.rows})
                && standsAlone(part, line, character))
                line.marks.push_back({character, {part.left, part.right}});
        }
        std::sort(line.marks.begin(), line.marks.end(), [](const Mark& one, const Mark& other) {
            return one.columns.begin < other.columns.begin;
        });
    }

    // Of its letters, apart for each stretch without a wide gap.
    std::vector<std::vector<double>> centres(const TextLine& line) const
    {
        std::vector<const Component*> inLine;
        for (const Component& letter : letters) {
            if (inside(letter, {line.columns(), line.rows}) && letter.width() < letterHeight * 1.4)
                inLine.push_back(&letter);
        }
        std::sort(inLine.begin(), inLine.end(), [](const Component* one, const Component* other) {
            return one->left < other->left;
        });
        std::vector<std::vector<double>> result;
        int end = 0;
        for (const Component* letter : inLine) {
            if (result.empty() || letter->left - end > 2.5 * letterHeight)
                result.emplace_back();
            result.back().push_back((letter->left + letter->right) / 2.0);
            end = std::max(end, letter->right);
        }
        std::erase_if(result, [](const auto& stretch) { return stretch.size() < 3; });
        return result;
    }

private:
    bool firstOfTop(int x, int y) const
    {
        // Components are counted at the first of their pixels only.
        const std::int32_t label = labels.at(x, y);
        for (int before = labels.components[static_cast<std::size_t>(label)].left; before < x;
             ++before) {
            if (labels.at(before, y) == label)
                return false;
        }
        return true;
    }

    static char markOf(const Component& part, const TextLine& line)
    {
        const double x = line.smallLetter;
        const double middle = line.baseline - (part.top + part.bottom) / 2.0;
        if (part.height() > std::max(2.0, 0.34 * x))
            return 0;
        if (part.width() >= 0.6 * x && part.top >= line.baseline)
            return '_';
        if (part.width() >= 0.35 * x && part.width() <= 1.1 * x && middle > 0.25 * x
            && middle < 0.8 * x && part.width() > part.height())
            return '-';
        if (part.width() <= std::max(2.0, 0.4 * x) && part.bottom <= line.baseline + 1
            && part.bottom >= line.baseline - 1)
            return '.';
        return 0;
    }

    // Whether nothing else of the line is above, below or, but for an underscore, beside it.
    bool standsAlone(const Component& part, const TextLine& line, char character) const
    {
        if (character != '_')
            return std::any_of(
                       line.runs.begin(), line.runs.end(),
                       [&](Span run) { return run.begin == part.left && run.end == part.right; })
                && inkRows(part, line) == part.height();
        return inkRows(part, line) == part.height();
    }

    int inkRows(const Component& part, const TextLine& line) const
    {
        int rows = 0;
        for (int y = line.rows.begin; y < line.rows.end; ++y)
            rows += rowHasInk(ink, y, {part.left, part.right});
        return rows;
    }

    static bool inside(const Component& letter, const Area& area)
    {
        const int middle = (letter.top + letter.bottom) / 2;
        return letter.left >= area.columns.begin && letter.right <= area.columns.end
            && middle >= area.rows.begin && middle < area.rows.end;
    }

    const Plane& ink;
    const int letterHeight;
    Labels labels;
    std::vector<Component> letters;
};

} // namespace

std::vector<TextLine> findTextLines(const Plane& ink, int letterHeight)
{
    LineFinder finder(ink, letterHeight);
    finder.find({{0, ink.size.width}, {0, ink.size.height}});
    const LineMeasurer measurer(ink, letterHeight);
    std::vector<TextLine> lines;
    for (const Area& area : finder.lines)
        lines.push_back(measurer.measure(area));
    std::vector<double> sizes;
    for (const TextLine& line : lines) {
        if (line.smallLetter > 0)
            sizes.push_back(line.smallLetter);
    }
    std::sort(sizes.begin(), sizes.end());
    const double usual = sizes.empty() ? letterHeight : sizes[sizes.size() / 4];
    std::vector<std::vector<std::vector<double>>> centres;
    std::vector<std::vector<double>> all;
    for (TextLine& line : lines) {
        // A line without a small letter has capitals and figures only.
        const bool tall = line.smallLetter > usual * 1.2 && line.smallLetter < usual * 1.65;
        if (line.smallLetter == 0 || tall)
            line.smallLetter = usual;
        centres.push_back(measurer.centres(line));
        all.insert(all.end(), centres.back().begin(), centres.back().end());
    }
    const double pitch = pitchOf(all, usual);
    for (std::size_t at = 0; at < lines.size(); ++at) {
        if (pitch > 0 && (centres[at].empty() || fit(centres[at], pitch) > 0.4))
            lines[at].pitch = pitch;
        measurer.findMarks(lines[at]);
    }
    return lines;
}

} // namespace tallowbay::linux_desktop
