#include "platform/tesseract/Dashes.h"

#include "platform/tesseract/FlatStrokes.h"
#include "platform/tesseract/Pitch.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numeric>
#include <optional>
#include <string_view>

namespace tallowbay::tesseract {

namespace {

bool isDash(const Symbol& symbol)
{
    return symbol.text == "-" || symbol.text == "–" || symbol.text == "—";
}

bool isLower(const Symbol& symbol)
{
    return std::islower(static_cast<unsigned char>(symbol.text[0]));
}

// What tells the typeface: the letters that stand alone in their columns.
struct Letters {
    std::vector<double> roundWidths; // of those that are about as wide as high everywhere
    Stretches centres; // of all, line by line

    bool areMany() const { return roundWidths.size() >= 4 && count() >= 10; }

    std::size_t count() const
    {
        std::size_t sum = 0;
        for (const auto& stretch : centres)
            sum += stretch.size();
        return sum;
    }

    void add(const Letters& other)
    {
        roundWidths.insert(roundWidths.end(), other.roundWidths.begin(), other.roundWidths.end());
        centres.insert(centres.end(), other.centres.begin(), other.centres.end());
    }
};

// The only symbol of a run of columns; none if there are several.
const Symbol* onlySymbolOf(Span run, const std::vector<Symbol>& symbols)
{
    const Symbol* only = nullptr;
    for (const Symbol& symbol : symbols) {
        if (symbol.centre < run.begin - 0.5 || symbol.centre > run.end + 0.5)
            continue;
        if (only)
            return nullptr;
        only = &symbol;
    }
    return only;
}

Letters lettersOf(const Plane& ink, const SymbolLine& read)
{
    Letters letters;
    letters.centres.emplace_back();
    for (const Span run : read.line.runs) {
        const Symbol* only = onlySymbolOf(run, read.symbols);
        if (!only || run.length() < 0.3 * read.line.smallLetter)
            continue;
        letters.centres.back().push_back((run.begin + run.end) / 2.0);
        if (isOneOf(*only, "aceos023456789"))
            letters.roundWidths.push_back(inkWidth(ink, read.line, run));
    }
    return letters;
}

// The mean without the outer quarters, where misread letters are.
double middleMean(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const auto outer = static_cast<std::ptrdiff_t>(values.size() / 4);
    const auto count = static_cast<double>(values.size()) - 2.0 * static_cast<double>(outer);
    return std::accumulate(values.begin() + outer, values.end() - outer, 0.0) / count;
}

// Whether all characters have one width, somewhat more than a round letter's. Where they have not,
// a grid fits by chance at times, but never well.
bool areOfOneWidth(const Stretches& centres, double roundWidth)
{
    constexpr double goodFit = 0.6;
    for (double pitch = 1.1 * roundWidth; pitch < 1.75 * roundWidth; pitch += 0.01) {
        if (pitchFit(centres, pitch) > goodFit)
            return true;
    }
    return false;
}

// The dashes of one line.
class DashLine {
public:
    DashLine(const Plane& ink, SymbolLine& read, const Letters& letters)
        : line(read.line)
        , symbols(read.symbols)
        , strokes(flatStrokesOf(ink, read.line))
        , unit(letters.areMany() ? middleMean(letters.roundWidths) : 0)
        , letters(letters)
    {
    }

    void settle()
    {
        for (const std::size_t at : enDashes())
            symbols[at].text = "–";
    }

private:
    // In widths of a round letter: no hyphen of the usual typefaces is longer than 0.72, no en
    // dash shorter than 0.8 or longer than 1.45.
    static constexpr double longerThanHyphens = 0.78;
    static constexpr double shorterThanEmDashes = 1.55;
    static constexpr double longestOfAWord = 0.9;
    static constexpr double clear = 5.5; // columns of a letter with which two hyphens do not touch
    // In characters where all are of one width: hyphens of some are 0.88 long.
    static constexpr double fillsItsCell = 0.93;
    static constexpr double apart = 1.3; // times longer than any hyphen beside it

    std::vector<std::size_t> enDashes() const
    {
        std::vector<std::size_t> found;
        double longestHyphen = 0;
        for (std::size_t at = 0; at < symbols.size(); ++at) {
            const auto stroke = strokeOf(at);
            if (!stroke)
                continue;
            if (isLongEnough(*stroke, at) && isAmongWords(at))
                found.push_back(at);
            else if (ratio(*stroke) < longerThanHyphens)
                longestHyphen = std::max(longestHyphen, stroke->length);
        }
        if (line.pitch == 0 && !found.empty() && areOfOneWidth(letters.centres, unit))
            return {};
        std::erase_if(
            found, [&](std::size_t at) { return strokeOf(at)->length < apart * longestHyphen; });
        return found;
    }

    double ratio(const FlatStroke& stroke) const { return stroke.length / unit; }

    bool isLongEnough(const FlatStroke& stroke, std::size_t at) const
    {
        if (!stroke.even)
            return false;
        if (line.pitch > 0)
            return symbols[at].text == "-" && stroke.length > fillsItsCell * line.pitch
                && stroke.length < 1.25 * line.pitch;
        if (unit == 0)
            return false;
        if (isInAWord(at) && (unit < clear || ratio(stroke) < longestOfAWord))
            return false;
        return ratio(stroke) > longerThanHyphens && ratio(stroke) < shorterThanEmDashes;
    }

    bool isFirst(std::size_t at) const
    {
        return at == 0 || symbols[at].spaceBefore || isOneOf(symbols[at - 1], "([{");
    }

    bool isLast(std::size_t at) const
    {
        return at + 1 == symbols.size() || symbols[at + 1].spaceBefore;
    }

    // A hyphen is likely there; as it is before a blank, which the engine may have lost, too.
    bool isInAWord(std::size_t at) const
    {
        if (isFirst(at))
            return false;
        return isLast(at) || (isLower(symbols[at - 1]) && isLower(symbols[at + 1]));
    }

    // Not the sign of an option or of a number, no other sign beside it, and no calculation.
    bool isAmongWords(std::size_t at) const
    {
        if (isFirst(at) && !isLast(at))
            return false;
        const auto isSign = [](const Symbol& symbol) {
            return isDash(symbol) || isOneOf(symbol, "<>|_=+*~");
        };
        if (!isFirst(at) && isSign(symbols[at - 1]))
            return false;
        if (!isLast(at) && isSign(symbols[at + 1]))
            return false;
        return std::ranges::none_of(
            symbols, [](const Symbol& symbol) { return isOneOf(symbol, "=+"); });
    }

    // None if it is not a flat one.
    std::optional<FlatStroke> strokeOf(std::size_t at) const
    {
        if (!isDash(symbols[at]) || strokes.empty())
            return {};
        const double centre = symbols[at].centre;
        const auto nearest = std::ranges::min_element(strokes, {}, [centre](const FlatStroke& one) {
            return std::abs(one.middle() - centre);
        });
        if (std::abs(nearest->middle() - centre) > 0.7 * line.smallLetter)
            return {};
        return *nearest;
    }

    const TextLine& line;
    std::vector<Symbol>& symbols;
    const std::vector<FlatStroke> strokes;
    const double unit; // a round letter's width, 0 if unknown
    const Letters& letters;
};

} // namespace

void settleDashes(const Plane& ink, std::vector<SymbolLine>& lines)
{
    std::vector<Letters> letters;
    for (const SymbolLine& read : lines)
        letters.push_back(lettersOf(ink, read));
    for (std::size_t at = 0; at < lines.size(); ++at) {
        if (std::ranges::none_of(lines[at].symbols, isDash))
            continue;
        Letters known = letters[at];
        for (std::size_t other = 0; other < lines.size(); ++other) {
            const bool alike = lines[other].line.smallLetter == lines[at].line.smallLetter;
            if (other != at && alike && !known.areMany())
                known.add(letters[other]);
        }
        DashLine(ink, lines[at], known).settle();
    }
}

} // namespace tallowbay::tesseract
