#include "EditDistance.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace tallowbay::bench {

namespace {

// Bytes that are no UTF-8 count as one character each.
std::u32string decoded(const std::string& utf8)
{
    std::u32string text;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[at]);
        const std::size_t length = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t code = length == 1 ? lead : lead & (0x7Fu >> length);
        for (std::size_t next = 1; next < length && at + next < utf8.size(); ++next)
            code = code << 6 | (static_cast<unsigned char>(utf8[at + next]) & 0x3Fu);
        text += code;
        at += length;
    }
    return text;
}

bool isBlank(char32_t code)
{
    return code == U' ' || code == U'\t' || code == U'\r' || code == 0xA0;
}

} // namespace

std::u32string normalised(const std::string& utf8)
{
    std::u32string text;
    bool blank = false;
    for (const char32_t code : decoded(utf8)) {
        if (isBlank(code)) {
            blank = true;
            continue;
        }
        const bool lineStart = text.empty() || text.back() == U'\n';
        if ((code == U'\n' || code == U'\f') && !lineStart)
            text += U'\n';
        if (code != U'\n' && code != U'\f') {
            if (blank && !lineStart)
                text += U' ';
            text += code;
        }
        blank = false;
    }
    while (!text.empty() && text.back() == U'\n')
        text.pop_back();
    return text;
}

int editDistance(const std::u32string& one, const std::u32string& other)
{
    std::vector<int> row(other.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < one.size(); ++i) {
        int diagonal = row[0];
        row[0] = static_cast<int>(i) + 1;
        for (std::size_t j = 0; j < other.size(); ++j) {
            const int replaced = diagonal + (one[i] != other[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace tallowbay::bench
