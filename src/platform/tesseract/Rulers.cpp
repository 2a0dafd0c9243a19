#include "platform/tesseract/Rulers.h"

#include "platform/tesseract/LineFinder.h"

#include <algorithm>
#include <cmath>

namespace tallowbay::tesseract {

namespace {

constexpr int longRuler = 8; // cells
constexpr int kept = 4;

// The longest run of cells of one shape without a blank.
Span longestRun(const std::vector<Cell>& cells, const std::vector<int>& shapes)
{
    Span longest;
    int begin = 0;
    for (int at = 0; at < static_cast<int>(cells.size()); ++at) {
        const auto here = static_cast<std::size_t>(at);
        if (at > 0
            && (shapes[here] != shapes[here - 1]
                || cells[here].number != cells[here - 1].number + 1))
            begin = at;
        if (at + 1 - begin > longest.length())
            longest = {begin, at + 1};
    }
    return longest;
}

Plane withoutColumns(const Plane& ink, Span rows, Span out)
{
    Plane sheet({ink.size.width - out.length(), ink.size.height});
    for (int y = std::max(0, rows.begin); y < std::min(ink.size.height, rows.end); ++y) {
        const auto* from = ink.row(y);
        std::copy(from, from + out.begin, sheet.row(y));
        std::copy(from + out.end, from + ink.size.width, sheet.row(y) + out.begin);
    }
    return sheet;
}

} // namespace

ShortenedLine shortened(const Plane& ink, const TextLine& line, const std::vector<int>& shapes)
{
    const Span run = longestRun(line.cells, shapes);
    if (run.length() < longRuler)
        return {Plane({0, 0}), line};
    const auto boundary = [&](int cell) {
        return static_cast<int>(
            std::lround(line.cells[static_cast<std::size_t>(cell)].centre - line.pitch / 2));
    };
    const Span out{boundary(run.begin + kept / 2), boundary(run.end - kept / 2)};
    const int room = static_cast<int>(line.smallLetter);
    ShortenedLine result{
        withoutColumns(ink, {line.rows.begin - room, line.rows.end + room}, out), line, out.begin,
        out.length()};
    TextLine& rest = result.line;
    std::erase_if(rest.cells, [&](const Cell& cell) {
        return cell.centre > out.begin && cell.centre < out.end;
    });
    for (Cell& cell : rest.cells)
        cell.centre -= cell.centre > out.begin ? out.length() : 0;
    rest.runs = inkColumns(
        result.ink, {{line.columns().begin, line.columns().end - out.length()}, line.rows});
    return result;
}

} // namespace tallowbay::tesseract
