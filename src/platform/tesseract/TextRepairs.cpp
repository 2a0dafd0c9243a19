#include "platform/tesseract/TextRepairs.h"

#include <algorithm>
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
        for (const Repair& repair : repairs())
            line = std::regex_replace(line, repair.wrong, repair.right);
    }
}

} // namespace tallowbay::tesseract
