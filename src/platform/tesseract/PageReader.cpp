#include "platform/tesseract/PageReader.h"

#include "platform/tesseract/CellText.h"
#include "platform/tesseract/Context.h"
#include "platform/tesseract/Dashes.h"
#include "platform/tesseract/Ink.h"
#include "platform/tesseract/LineText.h"
#include "platform/tesseract/Rulers.h"
#include "platform/tesseract/ShapeText.h"
#include "platform/tesseract/Shapes.h"
#include "platform/tesseract/TextRepairs.h"

#include <algorithm>
#include <cmath>

namespace tallowbay::tesseract {

namespace {

struct ReadLine {
    std::string text;
    double confidence = 0;
    bool evenPitch = false;
    int left = 0;
    double pitch = 0;
};

std::vector<Symbol> readPlaced(
    const Plane& ink, const TextLine& line, const Context* context, TesseractEngine& engine)
{
    auto symbols = context && needsContext(line) ? readWithContext(ink, line, *context, engine)
                                                 : engine.read(makeLineImage(ink, line));
    correctPlaces(symbols, line);
    if (!line.cells.empty())
        putInCells(symbols, line);
    return symbols;
}

std::vector<Symbol> readLine(
    const Plane& ink, const TextLine& line, const std::vector<int>& shapes, const Context* context,
    TesseractEngine& engine)
{
    const ShortenedLine less = shortened(ink, line, shapes);
    if (less.cut == 0)
        return readPlaced(ink, line, context, engine);
    auto symbols = readPlaced(less.ink, less.line, context, engine);
    for (Symbol& symbol : symbols)
        symbol.centre = less.wholeColumn(symbol.centre);
    return symbols;
}

std::vector<SymbolLine> readSymbols(const Plane& ink, int letter, TesseractEngine& engine)
{
    std::vector<SymbolLine> lines;
    auto found = findTextLines(ink, letter);
    const auto context = contextAmong(ink, found);
    const auto shapes = shapesOf(ink, found);
    for (std::size_t at = 0; at < found.size(); ++at) {
        auto symbols = readLine(ink, found[at], shapes[at], context ? &*context : nullptr, engine);
        lines.push_back({std::move(found[at]), std::move(symbols)});
    }
    settleShapes(lines, shapes);
    std::erase_if(lines, [](const SymbolLine& line) { return line.symbols.empty(); });
    for (SymbolLine& line : lines) {
        addMissingMarks(line.symbols, line.line);
        correctSpaces(line.symbols, line.line);
    }
    settleDashes(ink, lines);
    return lines;
}

ReadLine textLineOf(const SymbolLine& read)
{
    double confidence = 0;
    for (const Symbol& symbol : read.symbols)
        confidence += symbol.confidence / static_cast<double>(read.symbols.size());
    const TextLine& line = read.line;
    return {
        textOf(read.symbols, line), confidence, line.pitch > 0, line.columns().begin, line.pitch};
}

// Where every character has the same width, blanks at the start of a line mean something.
void indent(std::vector<ReadLine>& lines)
{
    int leftmost = -1;
    for (const ReadLine& line : lines) {
        if (line.evenPitch && (leftmost < 0 || line.left < leftmost))
            leftmost = line.left;
    }
    for (ReadLine& line : lines) {
        if (line.evenPitch)
            line.text.insert(
                0, static_cast<std::size_t>(std::lround((line.left - leftmost) / line.pitch)), ' ');
    }
}

std::vector<ReadLine> readLines(const Bitmap& bitmap, TesseractEngine& engine)
{
    Plane ink = inkOf(bitmap);
    removeRules(ink, std::max(6, letterHeight(ink)));
    const int letter = letterHeight(ink);
    std::vector<ReadLine> read;
    if (letter == 0)
        return read;
    levelContrast(ink, letter);
    for (const SymbolLine& line : readSymbols(ink, letter, engine))
        read.push_back(textLineOf(line));
    std::erase_if(read, [](const ReadLine& line) { return line.text.empty(); });
    return read;
}

} // namespace

TextObservations readPage(const Bitmap& bitmap, TesseractEngine& engine)
{
    auto read = readLines(bitmap, engine);
    std::vector<std::string> texts;
    std::vector<bool> code;
    for (const ReadLine& line : read) {
        texts.push_back(line.text);
        code.push_back(line.evenPitch);
    }
    repairScreenText(texts, code);
    for (std::size_t at = 0; at < read.size(); ++at)
        read[at].text = texts[at];
    indent(read);
    TextObservations observations;
    for (ReadLine& line : read)
        observations.push_back({{{std::move(line.text), line.confidence}}});
    return observations;
}

} // namespace tallowbay::tesseract
