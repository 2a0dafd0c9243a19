#include "Sample.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace tallowbay::bench {

namespace {

const std::vector<std::string> proportional{
    "DejaVu Sans", "Noto Sans",        "Cantarell",        "Liberation Sans",
    "Inter",       "Liberation Serif", "DejaVu Sans Mono", "Liberation Mono"};
const std::vector<std::string> monospaced{"DejaVu Sans Mono", "Liberation Mono"};

struct Theme {
    Colour foreground;
    Colour background;
};
const std::vector<Theme> lightThemes{{0x000000, 0xFFFFFF}, {0x202124, 0xFFFFFF},
                                     {0x2E3436, 0xF6F5F4}, {0x232629, 0xEFF0F1},
                                     {0x333333, 0xFAFAFA}, {0x1F2328, 0xF6F8FA}};
const std::vector<Theme> darkThemes{{0xFFFFFF, 0x000000}, {0xD4D4D4, 0x1E1E1E},
                                    {0xE6EDF3, 0x0D1117}, {0xF8F8F2, 0x282A36},
                                    {0xEEEEEC, 0x2D2D2D}, {0xFCFCFC, 0x31363B}};
const std::vector<Theme> lowContrastThemes{
    {0x9A9A9A, 0xFFFFFF}, {0x8A8A8A, 0xE8E8E8}, {0xA0A8B0, 0xF6F8FA}, {0x6B7280, 0x1F2937},
    {0x6E7681, 0x0D1117}, {0x6A9955, 0x2D2D30}, {0x93A1A1, 0xFDF6E3}, {0x586E75, 0x002B36}};
const std::vector<Colour> lightAccents{0x0451A5, 0xAF00DB, 0x098658, 0xA31515};
const std::vector<Colour> darkAccents{0x569CD6, 0xC586C0, 0xB5CEA8, 0xCE9178};

bool isDark(const Sample& sample)
{
    return (sample.background & 0xFF00u) < 0x8000u;
}

void applyTheme(Sample& sample, const Theme& theme)
{
    sample.foreground = theme.foreground;
    sample.background = theme.background;
}

void applyAnyTheme(Sample& sample, Random& random)
{
    applyTheme(sample, random.pick(random.oneIn(2) ? darkThemes : lightThemes));
}

Row plainRow(std::string text)
{
    return {{{std::move(text)}}, {}};
}

// Breaks text where a window of that many characters would.
std::vector<std::string> wrapped(const std::string& text, std::size_t columns)
{
    std::vector<std::string> lines{""};
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = std::min(text.find(' ', start), text.size());
        const std::string word = text.substr(start, end - start);
        if (!lines.back().empty() && lines.back().size() + 1 + word.size() > columns)
            lines.emplace_back();
        lines.back() += (lines.back().empty() ? "" : " ") + word;
        start = end + 1;
    }
    return lines;
}

void addSentences(Sample& sample, const std::vector<std::string>& from, Random& random)
{
    std::string text;
    for (int sentences = random.between(2, 5); sentences > 0; --sentences)
        text += (text.empty() ? "" : " ") + random.pick(from);
    const int widest = 760 * 2 / sample.textPixels; // half the text size is a usual advance
    for (std::string& line : wrapped(text, static_cast<std::size_t>(random.between(38, widest))))
        sample.rows.push_back(plainRow(std::move(line)));
}

void addProse(Sample& sample, const Corpus& corpus, Random& random)
{
    addSentences(sample, corpus.prose, random);
}

void addDashes(Sample& sample, const Corpus& corpus, Random& random)
{
    applyAnyTheme(sample, random);
    addSentences(sample, corpus.dashes, random);
}

// Letters of one kind follow each other in one colour: words, numbers, strings, the rest.
char kindOf(char letter)
{
    const auto code = static_cast<unsigned char>(letter);
    return std::isdigit(code) ? '0' : std::isalpha(code) || letter == '_' ? 'a' : ' ';
}

Row highlightedRow(const std::string& line, const std::vector<Colour>& accents, Random& random)
{
    Row row;
    for (std::size_t start = 0; start < line.size();) {
        std::size_t end = start + 1;
        while (end < line.size() && kindOf(line[end]) == kindOf(line[start]))
            ++end;
        Piece piece{line.substr(start, end - start)};
        if (kindOf(line[start]) != ' ' && random.oneIn(2))
            piece.colour = random.pick(accents);
        row.pieces.push_back(piece);
        start = end;
    }
    return row;
}

void addListing(Sample& sample, const std::vector<std::string>& lines, Random& random)
{
    sample.typeface = monospaced[random.below(2)];
    applyAnyTheme(sample, random);
    const bool highlighted = !random.oneIn(3);
    for (const std::string& line : lines)
        sample.rows.push_back(
            highlighted ? highlightedRow(line, isDark(sample) ? darkAccents : lightAccents, random)
                        : plainRow(line));
}

void addCode(Sample& sample, const Corpus& corpus, Random& random)
{
    addListing(sample, random.pick(corpus.code), random);
}

// On a screen of twice the density as often as not.
void addSymbols(Sample& sample, const Corpus& corpus, Random& random)
{
    sample.textPixels = std::clamp(sample.textPixels, 11, 18);
    if (random.oneIn(2)) {
        sample.textPixels *= 2;
        sample.margin *= 2;
    }
    addListing(sample, random.pick(corpus.symbols), random);
}

std::string number(Random& random)
{
    char text[32];
    const int whole = random.between(0, 99999);
    switch (random.below(5)) {
    case 0:
        std::snprintf(text, sizeof text, "%d", whole);
        break;
    case 1:
        std::snprintf(text, sizeof text, "%d.%02d", whole % 1000, random.below(100));
        break;
    case 2:
        std::snprintf(text, sizeof text, "%d,%03d", whole % 1000 + 1, random.below(1000));
        break;
    case 3:
        std::snprintf(text, sizeof text, "-%d.%d", whole % 100, random.below(10));
        break;
    default:
        std::snprintf(text, sizeof text, "%d.%d%%", whole % 100, random.below(10));
    }
    return text;
}

std::string date(Random& random)
{
    char text[32];
    std::snprintf(
        text, sizeof text, "%d-%02d-%02d", random.between(1998, 2026), random.between(1, 12),
        random.between(1, 28));
    return text;
}

std::string capitalised(std::string text)
{
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

std::string lower(std::string text)
{
    for (char& letter : text)
        letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    return text;
}

void addTable(Sample& sample, const Corpus& corpus, Random& random)
{
    applyAnyTheme(sample, random);
    const int columns = random.between(3, 6);
    Row head;
    for (int column = 0; column < columns; ++column)
        head.pieces.push_back(
            {capitalised(random.pick(corpus.words)), column, {}, column > 0, false, true});
    sample.rows.push_back(head);
    const bool dated = random.oneIn(2);
    for (int rows = random.between(4, 10); rows > 0; --rows) {
        Row row{{{capitalised(random.pick(corpus.words))}}, {}};
        for (int column = 1; column < columns; ++column)
            row.pieces.push_back(
                {dated && column == 1 ? date(random) : number(random), column, {}, true});
        sample.rows.push_back(row);
    }
    sample.columnGap = random.between(14, 48);
}

std::string url(const Corpus& corpus, Random& random)
{
    const std::string host = lower(random.pick(corpus.words));
    const std::string path = lower(random.pick(corpus.words));
    const std::string file = lower(random.pick(corpus.words));
    switch (random.below(7)) {
    case 0:
        return "https://www." + host + ".org/" + path + "/" + file + ".html";
    case 1:
        return "https://" + host + ".io/" + path + "?id=" + number(random) + "&lang=en";
    case 2:
        return "http://" + host + "." + path + ".net:8080/v" + std::to_string(random.below(9));
    case 3:
        return file + "." + path + "@" + host + ".com";
    case 4:
        return "/home/" + host + "/" + capitalised(path) + "/" + file + "_" + date(random) + ".pdf";
    case 5:
        return "git@" + host + ".com:" + path + "/" + file + "-" + host + ".git";
    default:
        return "C:\\Users\\" + capitalised(host) + "\\" + capitalised(path) + "\\" + file + ".txt";
    }
}

void addUrls(Sample& sample, const Corpus& corpus, Random& random)
{
    applyAnyTheme(sample, random);
    const bool linked = random.oneIn(2);
    const Colour link = isDark(sample) ? 0x58A6FF : 0x0B57D0;
    for (int rows = random.between(4, 9); rows > 0; --rows) {
        Piece piece{url(corpus, random)};
        if (linked)
            piece.colour = link;
        piece.underlined = linked && random.oneIn(3);
        sample.rows.push_back({{piece}, {}});
    }
}

Row uiRow(const std::string& line)
{
    const auto tab = line.find('\t');
    if (tab == std::string::npos)
        return plainRow(line);
    return {{{line.substr(0, tab)}, {line.substr(tab + 1), 1, {}, true}}, {}};
}

void addUi(Sample& sample, const Corpus& corpus, Random& random)
{
    applyAnyTheme(sample, random);
    sample.lineSpacing = random.between(14, 22) / 10.0;
    sample.columnGap = random.between(20, 120);
    for (int rows = random.between(4, 10); rows > 0; --rows)
        sample.rows.push_back(uiRow(random.pick(corpus.ui)));
}

// A dark head and a light body, a selected row, or rows in two shades.
void addMixed(Sample& sample, const Corpus& corpus, Random& random)
{
    random.oneIn(2) ? addUi(sample, corpus, random) : addTable(sample, corpus, random);
    applyTheme(sample, random.pick(lightThemes));
    const Theme band = random.pick(darkThemes);
    const auto paint = [&](Row& row, Theme theme) {
        row.background = theme.background;
        for (Piece& piece : row.pieces)
            piece.colour = theme.foreground;
    };
    paint(sample.rows.front(), band);
    if (random.oneIn(2))
        paint(sample.rows.at(sample.rows.size() / 2), {0xFFFFFF, 0x3584E4});
    for (std::size_t index = 2; index < sample.rows.size(); index += 2) {
        if (!sample.rows[index].background)
            sample.rows[index].background = 0xE4E6E8;
    }
}

std::vector<std::string> linesOf(const std::filesystem::path& file)
{
    std::ifstream in(file);
    if (!in)
        throw std::runtime_error("cannot read " + file.string());
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// Snippets stand apart by empty lines.
std::vector<std::vector<std::string>> snippetsOf(const std::filesystem::path& file)
{
    std::vector<std::vector<std::string>> snippets(1);
    for (const std::string& line : linesOf(file)) {
        std::string spaced;
        for (const char letter : line)
            spaced += letter == '\t' ? std::string(4, ' ') : std::string(1, letter);
        if (line.empty())
            snippets.emplace_back();
        else
            snippets.back().push_back(spaced);
    }
    return snippets;
}

// The words of four letters and more, without punctuation.
void addWords(std::vector<std::string>& words, const std::string& sentence)
{
    std::string word;
    for (const char letter : sentence + " ") {
        if (std::isalpha(static_cast<unsigned char>(letter))) {
            word += letter;
            continue;
        }
        if (word.size() > 3)
            words.push_back(word);
        word.clear();
    }
}

} // namespace

Corpus loadCorpus(const std::filesystem::path& folder)
{
    Corpus corpus{linesOf(folder / "prose.txt"),   {},
                  snippetsOf(folder / "code.txt"), snippetsOf(folder / "symbols.txt"),
                  linesOf(folder / "dashes.txt"),  linesOf(folder / "ui.txt")};
    for (const std::string& sentence : corpus.prose)
        addWords(corpus.words, sentence);
    return corpus;
}

const std::vector<std::string>& categories()
{
    static const std::vector<std::string> names{"light",   "dark",  "low-contrast", "code",
                                                "table",   "url",   "ui",           "mixed",
                                                "symbols", "dashes"};
    return names;
}

Sample makeSample(const Corpus& corpus, int number, Random& random)
{
    Sample sample;
    const int kinds = static_cast<int>(categories().size());
    sample.category = categories()[number % kinds];
    sample.typeface = proportional[number / kinds % 8];
    sample.textPixels = 10 + number / kinds % 9;
    sample.antialiasing = random.oneIn(2) ? Antialiasing::subpixel : Antialiasing::grey;
    sample.hinting =
        random.pick(std::vector{Hinting::slight, Hinting::slight, Hinting::full, Hinting::none});
    sample.lineSpacing = random.between(10, 15) / 10.0;
    sample.margin = random.between(3, 24);
    applyTheme(sample, random.pick(lightThemes));
    if (sample.category == "dark")
        applyTheme(sample, random.pick(darkThemes));
    if (sample.category == "low-contrast")
        applyTheme(sample, random.pick(lowContrastThemes));
    using Add = void (*)(Sample&, const Corpus&, Random&);
    constexpr Add makers[]{addProse, addProse, addProse, addCode,    addTable,
                           addUrls,  addUi,    addMixed, addSymbols, addDashes};
    makers[number % kinds](sample, corpus, random);
    return sample;
}

std::string textOf(const Sample& sample)
{
    std::string text;
    for (const Row& row : sample.rows) {
        int column = 0;
        for (const Piece& piece : row.pieces) {
            text += (piece.column != column ? "  " : "") + piece.text;
            column = piece.column;
        }
        text += '\n';
    }
    return text;
}

} // namespace tallowbay::bench
