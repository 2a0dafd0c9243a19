#include "hotkeys/UpperCase.h"

#include <cstdint>
#include <locale>
#include <stdexcept>

namespace tallowbay {

namespace {

struct Character {
    std::uint32_t code = 0;
    std::size_t length = 1; // bytes
    bool valid = false;
};

constexpr bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::size_t lengthByLead(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead < 0xE0)
        return 2;
    if (lead >= 0xE0 && lead < 0xF0)
        return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

Character characterAt(const std::string& text, std::size_t place)
{
    constexpr unsigned char leadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    const auto lead = static_cast<unsigned char>(text[place]);
    const std::size_t length = lengthByLead(lead);
    if (length == 0 || place + length > text.size())
        return {};
    std::uint32_t code = lead & leadBits[length];
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[place + i]))
            return {};
        code = code << 6 | (static_cast<unsigned char>(text[place + i]) & 0x3F);
    }
    return {code, length, true};
}

void append(std::string& text, std::uint32_t code)
{
    if (code < 0x80) {
        text += static_cast<char>(code);
        return;
    }
    if (code < 0x800) {
        text += static_cast<char>(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            text += static_cast<char>(0xE0 | code >> 12);
        } else {
            text += static_cast<char>(0xF0 | code >> 18);
            text += static_cast<char>(0x80 | (code >> 12 & 0x3F));
        }
        text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    }
    text += static_cast<char>(0x80 | (code & 0x3F));
}

// The user's own locale may know nothing but ASCII.
std::locale unicodeLocale()
{
    try {
        return std::locale("C.UTF-8");
    } catch (const std::runtime_error&) {
        return std::locale::classic();
    }
}

} // namespace

std::string upperCase(const std::string& text)
{
    constexpr std::uint32_t sharpS = 0xDF;
    const std::locale locale = unicodeLocale();
    std::string result;
    for (std::size_t place = 0; place < text.size();) {
        const Character character = characterAt(text, place);
        if (!character.valid)
            result += text[place];
        else if (character.code == sharpS)
            result += "SS"; // the one letter of a keyboard with two capitals
        else
            append(
                result,
                static_cast<std::uint32_t>(
                    std::toupper(static_cast<wchar_t>(character.code), locale)));
        place += character.length;
    }
    return result;
}

} // namespace tallowbay
