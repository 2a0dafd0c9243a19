#include "platform/tesseract/CellText.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace tallowbay::tesseract {

namespace {

// The cheapest way to give symbols to cells, both in order.
class Assignment {
public:
    Assignment(const std::vector<Symbol>& symbols, const TextLine& line)
        : symbols(symbols)
        , cells(line.cells)
        , pitch(line.pitch)
        , width(cells.size() + 1)
        , costs((symbols.size() + 1) * width)
    {
        for (std::size_t symbol = 0; symbol <= symbols.size(); ++symbol) {
            for (std::size_t cell = 0; cell <= cells.size(); ++cell)
                cost(symbol, cell) = cheapest(symbol, cell);
        }
    }

    // The symbols in their cells, with an underscore in each cell of one and in no other.
    std::vector<Symbol> result()
    {
        std::vector<Symbol> placed;
        std::size_t symbol = symbols.size();
        std::size_t cell = cells.size();
        while (symbol > 0 || cell > 0) {
            const double here = cost(symbol, cell);
            if (cell > 0 && here == cost(symbol, cell - 1) + costToLeave(cells[cell - 1])) {
                if (cells[--cell].isUnderscore)
                    placed.push_back({"_", cells[cell].centre, false, 0.5});
            } else if (
                symbol > 0 && here == cost(symbol - 1, cell) + costToLeave(symbols[symbol - 1])) {
                if (!isUnderscore(symbols[--symbol]))
                    placed.push_back(symbols[symbol]);
            } else {
                Symbol one = symbols[--symbol];
                one.centre = cells[--cell].centre;
                if (cells[cell].isUnderscore)
                    one.text = "_";
                else if (one.text == "O" && cells[cell].hasCore)
                    one.text = "0";
                placed.push_back(one);
            }
        }
        std::reverse(placed.begin(), placed.end());
        return placed;
    }

private:
    static bool isUnderscore(const Symbol& symbol) { return symbol.text == "_"; }

    double& cost(std::size_t symbol, std::size_t cell) { return costs[symbol * width + cell]; }

    double cheapest(std::size_t symbol, std::size_t cell)
    {
        if (symbol == 0 && cell == 0)
            return 0;
        double best = 1e9;
        if (cell > 0)
            best = std::min(best, cost(symbol, cell - 1) + costToLeave(cells[cell - 1]));
        if (symbol > 0)
            best = std::min(best, cost(symbol - 1, cell) + costToLeave(symbols[symbol - 1]));
        if (symbol > 0 && cell > 0)
            best = std::min(
                best,
                cost(symbol - 1, cell - 1) + costToJoin(symbols[symbol - 1], cells[cell - 1]));
        return best;
    }

    static double costToLeave(const Cell& cell) { return cell.isUnderscore ? 0.8 : 1.5; }
    static double costToLeave(const Symbol& symbol) { return isUnderscore(symbol) ? 0.8 : 1.5; }

    double costToJoin(const Symbol& symbol, const Cell& cell) const
    {
        const double away = std::min(2.0, std::abs(symbol.centre - cell.centre) / pitch);
        if (cell.isUnderscore && isLowOrFlat(symbol))
            return away + 0.3;
        return isUnderscore(symbol) == cell.isUnderscore ? away : away + 2;
    }

    // What an underscore is taken for.
    static bool isLowOrFlat(const Symbol& symbol)
    {
        constexpr std::string_view all[]{".", ",", "-", "~", "–", "—"};
        return std::ranges::find(all, symbol.text) != std::end(all);
    }

    const std::vector<Symbol>& symbols;
    const std::vector<Cell>& cells;
    const double pitch;
    const std::size_t width;
    std::vector<double> costs;
};

} // namespace

void putInCells(std::vector<Symbol>& symbols, const TextLine& line)
{
    symbols = Assignment(symbols, line).result();
}

} // namespace tallowbay::tesseract
