#include "platform/posix/preferences/SettingsText.h"

#include "platform/posix/files/FileUris.h"

#include <algorithm>
#include <charconv>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr auto blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view takeLine(std::string_view& text)
{
    const auto end = text.find('\n');
    const auto line = text.substr(0, end);
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
    return trimmed(line);
}

// What stands after the key's "="; empty optional if the line is about something else.
std::optional<std::string_view> valueInLine(std::string_view line, std::string_view key)
{
    const auto equals = line.find('=');
    if (equals == line.npos)
        return std::nullopt;
    auto name = trimmed(line.substr(0, equals));
    name = trimmed(name.substr(0, name.find('[')));
    return name == key ? std::optional(trimmed(line.substr(equals + 1))) : std::nullopt;
}

void replacePrefix(std::string& text, std::string_view prefix, const std::string& replacement)
{
    if (text.starts_with(prefix))
        text.replace(0, prefix.size(), replacement);
}

void appendUtf8(std::string& text, char32_t point)
{
    const auto tail = [&](int shift) { text += char(0x80 | ((point >> shift) & 0x3f)); };
    if (point < 0x80) {
        text += char(point);
    } else if (point < 0x800) {
        text += char(0xc0 | (point >> 6));
        tail(0);
    } else if (point < 0x10000) {
        text += char(0xe0 | (point >> 12));
        tail(6), tail(0);
    } else {
        text += char(0xf0 | (point >> 18));
        tail(12), tail(6), tail(0);
    }
}

// Takes what follows a backslash: a letter stands for itself, except in \n, \t, \xfc, \u1234 and
// \U12345678. As Qt writes it, \x has as many digits as follow.
void takeEscape(std::string_view& rest, std::string& text)
{
    const char kind = rest.front();
    rest.remove_prefix(1);
    const auto hexDigits = std::min(rest.find_first_not_of("0123456789abcdefABCDEF"), rest.size());
    const std::size_t digits = kind == 'u' ? 4 : kind == 'U' ? 8 : kind == 'x' ? hexDigits : 0;
    std::uint32_t point = 0;
    if (digits > 0 && rest.size() >= digits
        && std::from_chars(rest.data(), rest.data() + digits, point, 16).ptr
            == rest.data() + digits) {
        rest.remove_prefix(digits);
        appendUtf8(text, point);
        return;
    }
    text += kind == 'n' ? '\n' : kind == 't' ? '\t' : kind;
}

std::string withoutBackslashes(std::string_view rest)
{
    std::string text;
    while (!rest.empty()) {
        const char letter = rest.front();
        rest.remove_prefix(1);
        if (letter == '\\' && !rest.empty())
            takeEscape(rest, text);
        else
            text += letter;
    }
    return text;
}

std::string_view withoutQuotes(std::string_view text)
{
    const bool quoted = text.size() >= 2 && text.front() == text.back()
        && (text.front() == '"' || text.front() == '\'');
    return quoted ? text.substr(1, text.size() - 2) : text;
}

} // namespace

std::optional<std::string> keyFileValue(
    std::string_view text, std::string_view group, std::string_view key)
{
    std::optional<std::string> found;
    std::string_view current;
    while (!text.empty()) {
        const auto line = takeLine(text);
        if (line.starts_with('[') && line.ends_with(']'))
            current = line.substr(1, line.size() - 2);
        else if (const auto value = valueInLine(line, key); value && current == group)
            found = *value;
    }
    return found;
}

std::optional<fs::path> folderFromText(std::string text, const fs::path& home)
{
    replacePrefix(text, "file:$HOME", "file://" + home.native());
    replacePrefix(text, "file://$HOME", "file://" + home.native());
    if (text.starts_with("file:/") && !text.starts_with("file://"))
        replacePrefix(text, "file:", "file://");
    if (text.starts_with("file:"))
        return localPath(text);
    if (text == "~" || text.starts_with("~/"))
        replacePrefix(text, "~", home.native());
    replacePrefix(text, "$HOME", home.native());
    return text.starts_with('/') ? std::optional<fs::path>(text) : std::nullopt;
}

std::optional<fs::path> userFolder(
    std::string_view userDirs, std::string_view key, const fs::path& home)
{
    const auto value = keyFileValue(userDirs, "", key);
    if (!value)
        return std::nullopt;
    const auto folder = folderFromText(plainSetting(*value), home);
    const bool isHome =
        folder && (*folder / "").lexically_normal() == (home / "").lexically_normal();
    return isHome ? std::nullopt : folder;
}

std::string plainSetting(std::string_view written)
{
    return withoutBackslashes(withoutQuotes(written));
}

std::optional<std::string> unquotedSetting(std::string_view printed)
{
    const auto quoted = trimmed(printed);
    const auto text = withoutQuotes(quoted);
    if (text.size() == quoted.size())
        return std::nullopt;
    return withoutBackslashes(text);
}

} // namespace tallowbay::posix
