#include "platform/tesseract/Cells.h"

#include "platform/tesseract/LineFinder.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace tallowbay::tesseract {

namespace {

class CellFinder {
public:
    CellFinder(const Plane& ink, const TextLine& line, const std::vector<double>& centres)
        : ink(ink)
        , line(line)
        , centres(centres)
    {
    }

    std::vector<Cell> find() const
    {
        std::vector<Cell> cells;
        // A glyph begins somewhere in the left half of its cell.
        double centre = nearestCentre(line.columns().begin + 0.27 * line.pitch);
        for (int number = 0; centre < line.columns().end + 0.3 * line.pitch; ++number) {
            const bool underscore = isUnderscore(centre);
            if (underscore || hasInk(line.rows, middle(centre)))
                cells.push_back({number, centre, underscore, hasCore(centre)});
            centre = nearestCentre(centre + line.pitch);
        }
        return cells;
    }

private:
    // The centre of a cell that is nearest to the column.
    double nearestCentre(double column) const
    {
        std::complex<double> sum = 0;
        for (const double centre : centres) {
            const double away = (centre - column) / (reach * line.pitch);
            if (std::abs(away) > 2)
                continue;
            sum += std::polar(
                std::exp(-away * away), 2 * std::numbers::pi * (centre - column) / line.pitch);
        }
        return column + std::arg(sum) / (2 * std::numbers::pi) * line.pitch;
    }

    Span columnsAround(double centre, double cells) const
    {
        const auto left = std::lround(centre - cells * line.pitch);
        const auto right = std::max(left + 1, std::lround(centre + cells * line.pitch));
        return {
            std::clamp(static_cast<int>(left), 0, ink.size.width - 1),
            std::clamp(static_cast<int>(right), 1, ink.size.width)};
    }

    // The columns that no neighbour reaches into.
    Span middle(double centre) const { return columnsAround(centre, 0.3); }

    bool hasInk(Span rows, Span columns) const
    {
        for (int y = rows.begin; y < rows.end; ++y) {
            if (rowHasInk(ink, y, columns))
                return true;
        }
        return false;
    }

    std::uint8_t faintestIn(int y, Span columns) const
    {
        const auto* row = ink.row(y);
        return *std::min_element(row + columns.begin, row + columns.end);
    }

    // A flat stroke below the line that goes from one side to the other, and nothing above it.
    bool isUnderscore(double centre) const
    {
        const Span columns = middle(centre);
        if (hasInk({line.rows.begin, line.baseline}, columns))
            return false;
        for (int y = line.baseline; y < lowest(); ++y) {
            if (faintestIn(y, columns) >= faintStroke)
                return true;
        }
        return false;
    }

    // Half the height of a capital above the line, half way between its sides.
    bool hasCore(double centre) const
    {
        const int y = line.baseline - static_cast<int>(std::lround(0.67 * line.smallLetter));
        if (y <= line.rows.begin || y >= line.rows.end)
            return false;
        const auto runs = inkColumns(ink, {columnsAround(centre, 0.42), {y - 1, y + 1}});
        if (runs.empty())
            return false;
        const int sides = runs.front().begin + runs.back().end;
        return hasInk({y - 1, y + 1}, {(sides - 1) / 2, sides / 2 + 1});
    }

    // Where a stroke below the line may be.
    int lowest() const
    {
        return std::min(
            ink.size.height,
            line.baseline + static_cast<int>(std::lround(0.5 * line.smallLetter)) + 1);
    }

    static constexpr std::uint8_t faintStroke = 40; // a thin one may lie on two rows
    static constexpr double reach = 8; // in cells, of what tells where the grid is

    const Plane& ink;
    const TextLine& line;
    const std::vector<double>& centres;
};

} // namespace

std::vector<Cell> cellsOf(
    const Plane& ink, const TextLine& line, const std::vector<double>& centres)
{
    if (centres.empty())
        return {};
    return CellFinder(ink, line, centres).find();
}

} // namespace tallowbay::tesseract
