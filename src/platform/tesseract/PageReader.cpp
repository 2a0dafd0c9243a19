#include "platform/tesseract/PageReader.h"

#include "platform/tesseract/CellText.h"
#include "platform/tesseract/Dashes.h"
#include "platform/tesseract/Ink.h"
#include "platform/tesseract/LineText.h"
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

SymbolLine readLine(const Plane& ink, TextLine line, TesseractEngine& engine)
{
    auto symbols = engine.read(makeLineImage(ink, line));
    if (symbols.empty())
        return {std::move(line), {}};
    correctPlaces(symbols, line);
    if (!line.cells.empty())
        putInCells(symbols, line);
    addMissingMarks(symbols, line);
    correctSpaces(symbols, line);
    return {std::move(line), std::move(symbols)};
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
    std::vector<SymbolLine> lines;
    for (TextLine& line : findTextLines(ink, letter)) {
        SymbolLine one = readLine(ink, std::move(line), engine);
        if (!one.symbols.empty())
            lines.push_back(std::move(one));
    }
    settleDashes(ink, lines);
    for (const SymbolLine& line : lines)
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
