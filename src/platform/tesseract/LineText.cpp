#include "platform/tesseract/LineText.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace tallowbay::tesseract {

namespace {

// The widest gap whose middle lies between two symbols, in columns.
int gapBetween(const Symbol& one, const Symbol& other, const TextLine& line)
{
    int widest = 0;
    for (std::size_t at = 1; at < line.runs.size(); ++at) {
        const Span gap{line.runs[at - 1].end, line.runs[at].begin};
        const double middle = (gap.begin + gap.end) / 2.0;
        if (middle > one.centre && middle < other.centre)
            widest = std::max(widest, gap.length());
    }
    return widest;
}

bool isLetter(const Symbol& symbol)
{
    const auto code = static_cast<unsigned char>(symbol.text[0]);
    return std::isalpha(code) || code >= 0xC0;
}

// The least gap that may be a blank. Between words the engine knows best, even where an f leans
// over the gap; but it takes the signs inside of addresses and numbers for the ends of words.
double leastBlank(const Symbol& one, const Symbol& other, const TextLine& line)
{
    constexpr std::string_view joining = ".,@&%/\\:_-=?#~";
    if (line.pitch > 0)
        return 0.92 * line.pitch;
    const auto next = static_cast<unsigned char>(other.text[0]);
    const bool goesOn = std::islower(next) || std::isdigit(next) || isOneOf(other, joining);
    const bool inside = (isOneOf(one, joining) && goesOn) || isOneOf(other, joining);
    return (inside ? 0.45 : 0.15) * line.smallLetter;
}

double sureBlank(const Symbol& one, const Symbol& other, const TextLine& line)
{
    if (line.pitch > 0)
        return 0.92 * line.pitch;
    return (isLetter(one) && isLetter(other) ? 0.6 : 0.85) * line.smallLetter;
}

} // namespace

namespace {

// Two ways to read one letter.
bool areLookalikes(const Symbol& one, const Symbol& other)
{
    if (one.text == other.text)
        return false;
    return (isOneOf(one, "lL1I|") && isOneOf(other, "lL1I|"))
        || (isOneOf(one, "O0o") && isOneOf(other, "O0o"));
}

} // namespace

void correctPlaces(std::vector<Symbol>& symbols, const TextLine& line)
{
    for (std::size_t at = 1; at + 1 < symbols.size(); ++at) {
        const double before = symbols[at - 1].centre;
        const double after = symbols[at + 1].centre;
        double& centre = symbols[at].centre;
        if (before < after && (centre <= before || centre >= after))
            centre = (before + after) / 2;
    }
    for (std::size_t at = 1; at < symbols.size();) {
        const double distance = symbols[at].centre - symbols[at - 1].centre;
        const bool twice = areLookalikes(symbols[at], symbols[at - 1]);
        if (line.pitch == 0 || !twice || distance >= 0.6 * line.pitch) {
            ++at;
            continue;
        }
        const bool firstIsSurer = symbols[at - 1].confidence >= symbols[at].confidence;
        symbols.erase(symbols.begin() + static_cast<std::ptrdiff_t>(firstIsSurer ? at : at - 1));
    }
}

namespace {

int cellOf(const Symbol& symbol, const TextLine& line)
{
    return std::ranges::min_element(
               line.cells, {},
               [&symbol](const Cell& cell) { return std::abs(cell.centre - symbol.centre); })
        ->number;
}

// How many blank cells lie between two symbols.
int blanksBetween(const Symbol& one, const Symbol& other, const TextLine& line)
{
    return std::max(0, cellOf(other, line) - cellOf(one, line) - 1);
}

} // namespace

void correctSpaces(std::vector<Symbol>& symbols, const TextLine& line)
{
    if (!line.cells.empty()) {
        for (std::size_t at = 1; at < symbols.size(); ++at)
            symbols[at].spaceBefore = blanksBetween(symbols[at - 1], symbols[at], line) > 0;
        return;
    }
    enum class Gap { none, either, blank };
    std::vector<Gap> gaps(symbols.size() + 1, Gap::none);
    for (std::size_t at = 1; at < symbols.size(); ++at) {
        const Symbol& one = symbols[at - 1];
        const Symbol& other = symbols[at];
        const int gap = gapBetween(one, other, line);
        if (gap >= sureBlank(one, other, line))
            gaps[at] = Gap::blank;
        else if (gap >= leastBlank(one, other, line))
            gaps[at] = Gap::either;
    }
    // The engine's places are a letter off at times: its blank beside the gap is the gap's.
    const auto misplaced = [&](std::size_t at) {
        return gaps[at] == Gap::blank && !symbols[at].spaceBefore;
    };
    for (std::size_t at = 1; at < symbols.size(); ++at) {
        if (!symbols[at].spaceBefore || gaps[at] != Gap::none)
            continue;
        if (misplaced(at - 1))
            std::swap(gaps[at], gaps[at - 1]);
        else if (at + 1 < symbols.size() && misplaced(at + 1))
            std::swap(gaps[at], gaps[at + 1]);
    }
    for (std::size_t at = 1; at < symbols.size(); ++at)
        symbols[at].spaceBefore =
            gaps[at] == Gap::blank || (gaps[at] == Gap::either && symbols[at].spaceBefore);
}

namespace {

std::string_view lookalikes(char mark)
{
    return mark == '.' ? ".,:;!?ij" : mark == '-' ? "-=~+_*" : "_-.,=";
}

bool isThere(const std::vector<Symbol>& symbols, const Mark& mark, double reach)
{
    const double middle = (mark.columns.begin + mark.columns.end) / 2.0;
    return std::any_of(symbols.begin(), symbols.end(), [&](const Symbol& symbol) {
        return std::abs(symbol.centre - middle) < reach
            && (isOneOf(symbol, lookalikes(mark.character))
                || static_cast<unsigned char>(symbol.text[0]) >= 0x80);
    });
}

// A mark that the engine took for another one.
bool replaceMistaken(std::vector<Symbol>& symbols, const Mark& mark, double reach)
{
    const double middle = (mark.columns.begin + mark.columns.end) / 2.0;
    for (Symbol& symbol : symbols) {
        if (std::abs(symbol.centre - middle) >= reach || !isOneOf(symbol, "-._~*"))
            continue;
        symbol.text = mark.character;
        return true;
    }
    return false;
}

} // namespace

void addMissingMarks(std::vector<Symbol>& symbols, const TextLine& line)
{
    for (const Mark& mark : line.marks) {
        if (isThere(symbols, mark, 1.5 * line.smallLetter)
            || replaceMistaken(symbols, mark, 0.5 * line.smallLetter))
            continue;
        const double middle = (mark.columns.begin + mark.columns.end) / 2.0;
        const auto next = std::find_if(symbols.begin(), symbols.end(), [&](const Symbol& symbol) {
            return symbol.centre > middle;
        });
        symbols.insert(next, {std::string(1, mark.character), middle, false, 0.5});
    }
}

std::string textOf(const std::vector<Symbol>& symbols, const TextLine& line)
{
    std::string text;
    for (std::size_t at = 0; at < symbols.size(); ++at) {
        if (at > 0 && symbols[at].spaceBefore) {
            const int gap = gapBetween(symbols[at - 1], symbols[at], line);
            if (!line.cells.empty())
                text.append(
                    static_cast<std::size_t>(blanksBetween(symbols[at - 1], symbols[at], line)),
                    ' ');
            else if (line.pitch > 0)
                text.append(
                    static_cast<std::size_t>(std::max(1.0, std::floor(gap / line.pitch + 0.08))),
                    ' ');
            else
                text += gap > 3.5 * line.smallLetter ? '\t' : ' ';
        }
        text += symbols[at].text;
    }
    return text;
}

} // namespace tallowbay::tesseract
