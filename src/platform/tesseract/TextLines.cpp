#include "platform/tesseract/TextLines.h"

#include "platform/tesseract/Cells.h"
#include "platform/tesseract/Components.h"
#include "platform/tesseract/LineFinder.h"
#include "platform/tesseract/Pitch.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tallowbay::tesseract {

namespace {

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

class LineMeasurer {
public:
    LineMeasurer(const Plane& ink, int letterHeight)
        : ink(ink)
        , letterHeight(letterHeight)
        , letters(componentsOf(ink, solidInk))
    {
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
        line.letters = static_cast<int>(bottoms.size());
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

    void findCells(TextLine& line) const
    {
        std::vector<double> centres;
        for (const Component& part : letters) {
            if (inside(part, {line.columns(), line.rows}) && part.width() < 1.3 * line.pitch)
                centres.push_back((part.left + part.right) / 2.0);
        }
        line.cells = cellsOf(ink, line, centres);
    }

    // Of its letters, apart for each stretch without a wide gap.
    Stretches centres(const TextLine& line) const
    {
        std::vector<const Component*> inLine;
        for (const Component& letter : letters) {
            if (inside(letter, {line.columns(), line.rows}) && letter.width() < letterHeight * 1.4)
                inLine.push_back(&letter);
        }
        std::sort(inLine.begin(), inLine.end(), [](const Component* one, const Component* other) {
            return one->left < other->left;
        });
        Stretches result;
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
        const bool ownRun = std::any_of(line.runs.begin(), line.runs.end(), [&part](Span run) {
            return run.begin == part.left && run.end == part.right;
        });
        return (ownRun || character == '_') && inkRows(part, line) == part.height();
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
    const std::vector<Component> letters;
};

// Settles the height of a small letter where a line alone does not tell it. Returns the usual one.
double settleLetterSizes(std::vector<TextLine>& lines, int letterHeight)
{
    std::vector<double> sizes;
    for (const TextLine& line : lines) {
        if (line.smallLetter > 0)
            sizes.push_back(line.smallLetter);
    }
    std::sort(sizes.begin(), sizes.end());
    const double usual = sizes.empty() ? letterHeight : sizes[sizes.size() / 4];
    for (TextLine& line : lines) {
        // A line without a small letter has capitals and figures only.
        const bool tall = line.smallLetter > usual * 1.2 && line.smallLetter < usual * 1.65;
        if (line.smallLetter == 0 || tall)
            line.smallLetter = usual;
    }
    return usual;
}

// Lines of code are evenly apart: where one has hardly a letter, as one with a brace alone, the
// lines around it tell where its letters would stand.
void settleBaselines(std::vector<TextLine>& lines, double smallLetter)
{
    constexpr int enough = 4;
    std::vector<int> sure;
    for (const TextLine& line : lines) {
        if (line.pitch > 0 && line.letters >= enough)
            sure.push_back(line.baseline);
    }
    std::vector<int> steps;
    for (std::size_t at = 1; at < sure.size(); ++at)
        steps.push_back(sure[at] - sure[at - 1]);
    std::erase_if(steps, [&](int step) { return step < 1.5 * smallLetter; });
    if (steps.empty())
        return;
    std::sort(steps.begin(), steps.end());
    const double step = steps[steps.size() / 4];
    for (TextLine& line : lines) {
        if (line.pitch == 0 || line.letters >= enough)
            continue;
        const int nearest = *std::ranges::min_element(
            sure, {}, [&line](int baseline) { return std::abs(baseline - line.baseline); });
        const double away = (line.baseline - nearest) / step;
        const auto expected = static_cast<int>(std::lround(nearest + std::round(away) * step));
        const double reach = (line.letters == 0 ? 1.2 : 0.7) * smallLetter;
        if (std::abs(expected - line.baseline) <= reach) {
            line.baseline = expected;
            line.smallLetter = smallLetter;
        }
    }
}

void findPitch(std::vector<TextLine>& lines, const LineMeasurer& measurer, double smallLetter)
{
    std::vector<Stretches> centres;
    Stretches all;
    for (const TextLine& line : lines) {
        centres.push_back(measurer.centres(line));
        all.insert(all.end(), centres.back().begin(), centres.back().end());
    }
    const double pitch = pitchOf(all, smallLetter);
    for (std::size_t at = 0; at < lines.size(); ++at) {
        // Quotes are of two parts, neither in the middle.
        const bool unclear = centres[at].empty() || lines[at].letters == 0;
        if (pitch > 0 && (unclear || pitchFit(centres[at], pitch) > 0.4))
            lines[at].pitch = pitch;
    }
}

} // namespace

std::vector<TextLine> findTextLines(const Plane& ink, int letterHeight)
{
    const LineMeasurer measurer(ink, letterHeight);
    std::vector<TextLine> lines;
    for (const Area& area : findLineAreas(ink, letterHeight))
        lines.push_back(measurer.measure(area));
    const double smallLetter = settleLetterSizes(lines, letterHeight);
    findPitch(lines, measurer, smallLetter);
    settleBaselines(lines, smallLetter);
    for (TextLine& line : lines) {
        measurer.findMarks(line);
        if (line.pitch > 0)
            measurer.findCells(line);
    }
    return lines;
}

} // namespace tallowbay::tesseract
