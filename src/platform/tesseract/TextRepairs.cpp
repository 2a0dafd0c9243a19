#include "platform/tesseract/TextRepairs.h"

#include <algorithm>
#include <cctype>
#include <regex>
#include <string_view>

namespace tallowbay::tesseract {

namespace {

void replaceAll(std::string& text, std::string_view from, std::string_view to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

void straightenDouble(std::string& line)
{
    for (const std::string_view curly : {"“", "”", "„"})
        replaceAll(line, curly, "\"");
}

void straightenSingle(std::string& line)
{
    for (const std::string_view curly : {"‘", "’"})
        replaceAll(line, curly, "'");
}

bool anyHolds(const std::vector<std::string>& lines, std::string_view text)
{
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
        return line.find(text) != std::string::npos;
    });
}

struct Repair {
    std::regex wrong;
    const char* right;
};

const std::vector<Repair>& repairs()
{
    static const std::vector<Repair> all{
        {std::regex(R"(\bCt[rn][il1|]?[il1]?([+-])(?=[A-Za-z0-9+-]))"), "Ctrl$1"},
        {std::regex(R"(\bF[lIi1]{2}(?![A-Za-z0-9]))"), "F11"},
        {std::regex(R"(\bF[lIi](0|2)(?![A-Za-z0-9]))"), "F1$1"},
        {std::regex(R"((^|[^A-Za-z])lL(?=[a-z]))"), "$1l"},
        {std::regex(R"(\bSth\b)"), "5th"},
        {std::regex(R"((^|["'(] ?)\|(?= [a-z]))"), "$1I"},
    };
    return all;
}

// An f between hexadecimal digits; before them it is an amount unless a letter follows.
void repairHexadecimals(std::string& line)
{
    static const std::regex inside(
        R"(((?:0[xX]|#|[a-fA-F])[0-9A-Fa-f]*)£(?=[0-9A-Fa-f£]|[^A-Za-z]|$))");
    static const std::regex first(R"((^|[^0-9A-Za-z£])£(?=[0-9]*[a-f][0-9a-f]{3}))");
    for (std::string before; before != line;) {
        before = line;
        line = std::regex_replace(line, inside, "$1f");
    }
    line = std::regex_replace(line, first, "$1f");
}

// Two to eight hexadecimal digits, or what the engine takes some of them for.
const std::regex& dumpedBytes()
{
    static const std::regex bytes(R"(\b(?:[0-9A-Fa-fOoQS]{2}){1,4}\b)");
    return bytes;
}

std::string asBytes(std::string token, bool upperCase)
{
    for (char& digit : token) {
        if (digit == 'O' || digit == 'o' || digit == 'Q')
            digit = '0';
        else if (digit == 'S')
            digit = '5';
        const auto code = static_cast<unsigned char>(digit);
        digit = static_cast<char>(upperCase ? std::toupper(code) : std::tolower(code));
    }
    return token;
}

// Whether a line is a dump: at least six bytes, some with figures, and hardly anything else.
bool isDump(const std::string& line)
{
    std::size_t bytes = 0;
    std::size_t figures = 0;
    std::size_t covered = 0;
    for (std::sregex_iterator at(line.begin(), line.end(), dumpedBytes()), end; at != end; ++at) {
        const std::string token = at->str();
        ++bytes;
        figures += token.find_first_of("0123456789") != std::string::npos;
        covered += token.size();
    }
    const auto letters = std::ranges::count_if(
        line, [](char letter) { return std::isalnum(static_cast<unsigned char>(letter)); });
    return bytes >= 6 && figures >= 2 && covered * 10 >= static_cast<std::size_t>(letters) * 7;
}

// The engine knows words: it reads two zeros as letters and an f at a beginning as a capital.
void repairDump(std::string& line)
{
    if (!isDump(line))
        return;
    const auto count = [&line](std::string_view letters) {
        return std::ranges::count_if(
            line, [letters](char one) { return letters.find(one) != std::string_view::npos; });
    };
    const bool upperCase = count("ABCDEF") > count("abcdef");
    std::string repaired;
    auto rest = line.cbegin();
    for (std::sregex_iterator at(line.begin(), line.end(), dumpedBytes()), end; at != end; ++at) {
        repaired.append(rest, (*at)[0].first).append(asBytes(at->str(), upperCase));
        rest = (*at)[0].second;
    }
    line = repaired.append(rest, line.cend());
}

} // namespace

void repairScreenText(std::vector<std::string>& lines, const std::vector<bool>& isCode)
{
    const bool straightDouble = anyHolds(lines, "\"");
    const bool straightSingle = anyHolds(lines, "'");
    for (std::size_t at = 0; at < lines.size(); ++at) {
        std::string& line = lines[at];
        if (straightDouble || isCode[at])
            straightenDouble(line);
        if (straightSingle || isCode[at])
            straightenSingle(line);
        if (isCode[at])
            repairHexadecimals(line);
        if (isCode[at])
            repairDump(line);
        for (const Repair& repair : repairs())
            line = std::regex_replace(line, repair.wrong, repair.right);
    }
}

} // namespace tallowbay::tesseract
