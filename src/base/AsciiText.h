#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace tallowbay {

// Letters A to Z in lower case, and every other byte as it is, whatever the user's language: in a
// Turkish session the language's own rules do not make an "i" of an "I".
inline std::string asciiLowercase(std::string text)
{
    std::ranges::transform(text, text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
    });
    return text;
}

// Without these characters at its two ends.
inline std::string_view trimmed(std::string_view text, std::string_view blanks)
{
    const auto first = text.find_first_not_of(blanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

} // namespace tallowbay
