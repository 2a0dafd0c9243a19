#pragma once

#include <algorithm>
#include <string>

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

} // namespace tallowbay
