#include "platform/tesseract/ShapeText.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <string>
#include <string_view>

namespace tallowbay::tesseract {

namespace {

// What the cells of one shape were read as, and where they stand.
struct Ballot {
    std::map<std::string, double> votes;
    int amongFigures = 0;
    int amongLetters = 0;
};

using Shapes = std::vector<int>;
using Ballots = std::map<int, Ballot>;

std::string straight(const std::string& text)
{
    if (text == "“" || text == "”" || text == "„")
        return "\"";
    return text == "‘" || text == "’" ? "'" : text;
}

// Where all characters have one width text is code, which has straight quotes alone.
void straighten(SymbolLine& line)
{
    for (Symbol& symbol : line.symbols)
        symbol.text = straight(symbol.text);
}

// For every cell its symbol, if it has one.
std::vector<const Symbol*> symbolsInCells(const SymbolLine& line)
{
    std::vector<const Symbol*> result;
    auto symbol = line.symbols.begin();
    for (const Cell& cell : line.line.cells) {
        while (symbol != line.symbols.end() && symbol->centre < cell.centre - 0.01)
            ++symbol;
        const bool here = symbol != line.symbols.end() && symbol->centre < cell.centre + 0.01;
        result.push_back(here ? &*symbol : nullptr);
    }
    return result;
}

// How many of the neighbours in a row with the shape of a cell were read.
int readAround(const Shapes& shapes, const std::vector<const Symbol*>& symbols, std::size_t at)
{
    std::size_t begin = at;
    std::size_t end = at + 1;
    while (begin > 0 && shapes[begin - 1] == shapes[at])
        --begin;
    while (end < shapes.size() && shapes[end] == shapes[at])
        ++end;
    return static_cast<int>(std::count_if(
        symbols.begin() + static_cast<std::ptrdiff_t>(begin),
        symbols.begin() + static_cast<std::ptrdiff_t>(end),
        [](const Symbol* symbol) { return symbol != nullptr; }));
}

// A run of one shape has one vote: what errs once there errs everywhere.
void vote(const SymbolLine& line, const Shapes& shapes, Ballots& ballots)
{
    const auto symbols = symbolsInCells(line);
    for (std::size_t at = 0; at < shapes.size(); ++at) {
        if (symbols[at])
            ballots[shapes[at]].votes[symbols[at]->text] +=
                std::pow(symbols[at]->confidence, 4) / readAround(shapes, symbols, at);
    }
}

// The reading with most votes, if it is far ahead or if any will do; else empty.
std::string winner(const Ballot& ballot, bool any)
{
    std::string best;
    double most = 0;
    double second = 0;
    for (const auto& [text, votes] : ballot.votes) {
        second = std::max(second, std::min(votes, most));
        if (votes > most) {
            most = votes;
            best = text;
        }
    }
    return any || (most > 0.3 && most >= 1.3 * second) ? best : std::string();
}

// Gives the cells their characters and drops the symbols that lie between two sure ones.
void settle(SymbolLine& line, const Shapes& shapes, const Ballots& ballots)
{
    const auto symbols = symbolsInCells(line);
    const double pitch = line.line.pitch;
    std::vector<Symbol> settled;
    std::vector<double> sure;
    for (std::size_t at = 0; at < shapes.size(); ++at) {
        const Cell& cell = line.line.cells[at];
        const auto ballot = ballots.find(shapes[at]);
        const std::string text =
            ballot == ballots.end() ? "" : winner(ballot->second, symbols[at] == nullptr);
        if (symbols[at])
            settled.push_back(*symbols[at]);
        else if (!text.empty())
            settled.push_back({text, cell.centre, false, 0.5});
        if (text.empty())
            continue;
        settled.back().text = text;
        sure.push_back(cell.centre);
    }
    const auto inCell = [&](const Symbol& one) {
        return std::ranges::any_of(settled, [&](const Symbol& other) {
            return std::abs(other.centre - one.centre) < 0.01;
        });
    };
    std::vector<Symbol> others;
    for (const Symbol& one : line.symbols) {
        const bool doubled = std::ranges::any_of(
            sure, [&](double centre) { return std::abs(one.centre - centre) < 0.5 * pitch; });
        if (!doubled && !inCell(one))
            others.push_back(one);
    }
    settled.insert(settled.end(), others.begin(), others.end());
    std::ranges::stable_sort(settled, {}, &Symbol::centre);
    line.symbols = std::move(settled);
}

enum class Kind { none, figure, letter };

Kind kindOf(const std::string& text)
{
    const auto code = static_cast<unsigned char>(text[0]);
    if (std::isdigit(code))
        return Kind::figure;
    return std::isalpha(code) || code == '_' || code >= 0xC0 ? Kind::letter : Kind::none;
}

bool isRound(const std::string& text)
{
    return text == "O" || text == "Q" || text == "@";
}

// The kinds of the neighbours of a symbol; a round letter says nothing itself.
void countNeighbours(const SymbolLine& line, const Shapes& shapes, Ballots& ballots)
{
    const auto symbols = symbolsInCells(line);
    const auto& cells = line.line.cells;
    const auto kindAt = [&](std::size_t from, std::size_t at) {
        const bool adjoins = at < cells.size() && symbols[at] && !isRound(symbols[at]->text)
            && std::abs(cells[at].number - cells[from].number) == 1;
        return adjoins ? kindOf(symbols[at]->text) : Kind::none;
    };
    for (std::size_t at = 0; at < shapes.size(); ++at) {
        const Kind before = at > 0 ? kindAt(at, at - 1) : Kind::none;
        const Kind after = kindAt(at, at + 1);
        const bool prefix = before == Kind::none && after == Kind::letter
            && symbols[at + 1]->text == "x" && kindAt(at + 1, at + 2) == Kind::figure;
        const bool letters = before == Kind::letter || after == Kind::letter;
        const bool figures = before == Kind::figure || after == Kind::figure;
        ballots[shapes[at]].amongFigures += prefix || (figures && !letters);
        ballots[shapes[at]].amongLetters += !prefix && letters && !figures;
    }
}

// A round sign that stands among figures wherever it stands is a zero.
void settleZeros(SymbolLine& line, const Shapes& shapes, const Ballots& ballots)
{
    for (std::size_t at = 0; at < shapes.size(); ++at) {
        const Ballot& ballot = ballots.at(shapes[at]);
        if (ballot.amongFigures < 2 || ballot.amongLetters > 0)
            continue;
        for (Symbol& symbol : line.symbols) {
            const bool here = std::abs(symbol.centre - line.line.cells[at].centre) < 0.01;
            if (here && isRound(symbol.text))
                symbol.text = "0";
        }
    }
}

} // namespace

void settleShapes(std::vector<SymbolLine>& lines, const std::vector<Shapes>& shapes)
{
    Ballots ballots;
    for (std::size_t at = 0; at < lines.size(); ++at) {
        if (!shapes[at].empty())
            straighten(lines[at]);
        vote(lines[at], shapes[at], ballots);
    }
    for (std::size_t at = 0; at < lines.size(); ++at) {
        if (!shapes[at].empty())
            settle(lines[at], shapes[at], ballots);
        countNeighbours(lines[at], shapes[at], ballots);
    }
    for (std::size_t at = 0; at < lines.size(); ++at)
        settleZeros(lines[at], shapes[at], ballots);
}

} // namespace tallowbay::tesseract
