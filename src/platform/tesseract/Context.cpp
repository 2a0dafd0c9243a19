#include "platform/tesseract/Context.h"

#include <algorithm>
#include <cmath>

namespace tallowbay::tesseract {

namespace {

constexpr std::size_t few = 5; // cells that say too little alone
constexpr std::size_t fewSigns = 12; // where hardly any is a letter
constexpr std::size_t enough = 7; // cells that say enough
constexpr int most = 14; // cells that are worth the time

void copy(const Plane& ink, const TextLine& line, Plane& sheet, int baseline, int left)
{
    const Span columns = line.columns();
    for (int y = std::max(0, line.rows.begin - 1); y < std::min(ink.size.height, line.rows.end + 1);
         ++y) {
        const int target = y - line.baseline + baseline;
        if (target < 0 || target >= sheet.size.height)
            continue;
        for (int x = std::max(0, columns.begin - 1); x < std::min(ink.size.width, columns.end + 1);
             ++x)
            sheet.row(target)[x - columns.begin + left] = ink.row(y)[x];
    }
}

std::vector<Span> moved(std::vector<Span> runs, int by)
{
    for (Span& run : runs)
        run = {run.begin + by, run.end + by};
    return runs;
}

TextLine joined(const TextLine& context, const TextLine& line, int contextShift, int shift)
{
    TextLine both = context;
    both.runs = moved(context.runs, contextShift);
    for (const Span run : moved(line.runs, shift))
        both.runs.push_back(run);
    return both;
}

} // namespace

bool needsContext(const TextLine& line)
{
    return line.pitch > 0 && !line.cells.empty()
        && line.cells.size() <= (line.letters < 4 ? fewSigns : few);
}

std::optional<Context> contextAmong(const Plane& ink, const std::vector<TextLine>& lines)
{
    const auto longest =
        std::ranges::max_element(lines, {}, [](const TextLine& line) { return line.cells.size(); });
    if (longest == lines.end() || longest->cells.size() < enough)
        return std::nullopt;
    TextLine context = *longest;
    const double last = context.columns().begin + most * context.pitch;
    while (context.runs.size() > 1 && context.runs.back().end > last)
        context.runs.pop_back();
    return Context{ink, std::move(context)};
}

std::vector<Symbol> readWithContext(
    const Plane& ink, const TextLine& line, const Context& context, TesseractEngine& engine)
{
    constexpr int margin = 2;
    const TextLine& words = context.line;
    const int above =
        std::max(line.baseline - line.rows.begin, words.baseline - words.rows.begin) + margin;
    const int below =
        std::max(line.rows.end - line.baseline, words.rows.end - words.baseline) + margin;
    const auto gap = static_cast<int>(std::lround(2 * line.pitch));
    const int left = margin + words.columns().length() + gap;
    Plane sheet({left + line.columns().length() + margin, above + below});
    copy(context.ink, words, sheet, above, margin);
    copy(ink, line, sheet, above, left);
    const int shift = left - line.columns().begin;
    TextLine both = joined(words, line, margin - words.columns().begin, shift);
    both.rows = {0, sheet.size.height};
    both.baseline = above;
    auto symbols = engine.read(makeLineImage(sheet, both));
    std::erase_if(symbols, [&](const Symbol& one) { return one.centre < left - gap / 2.0; });
    for (Symbol& one : symbols)
        one.centre -= shift;
    return symbols;
}

} // namespace tallowbay::tesseract
