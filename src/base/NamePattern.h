#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tallowbay {

// A pattern of file names as shells have them: "*" stands for any text, "?" for one character, and
// "[a-z0-9]" for one of those, "[!a-z]" for one of all others. Bytes are compared, but "?" takes a
// whole character of UTF-8. Never takes more time than name times pattern.
class NamePattern {
public:
    // The pattern, or why it is none, in a few words for people.
    static std::pair<std::optional<NamePattern>, std::string> parse(std::string text)
    {
        if (text.empty())
            return {std::nullopt, "is empty"};
        if (text.size() > longest)
            return {std::nullopt, "is longer than any name"};
        if (text.find('/') != std::string::npos)
            return {std::nullopt, "names a folder; only the file's name is compared"};
        for (std::size_t at = text.find('['); at != std::string::npos; at = text.find('[', at)) {
            at = endOfSet(text, at);
            if (at == std::string::npos)
                return {std::nullopt, "has a \"[\" without its \"]\""};
        }
        return {NamePattern(std::move(text)), {}};
    }

    // Whether it stands for the whole name.
    bool matches(std::string_view name) const
    {
        std::size_t at = 0;
        std::size_t in = 0;
        std::size_t afterStar = std::string::npos;
        std::size_t retry = 0;
        while (in < name.size()) {
            const std::size_t taken = at < text.size() ? matchOne(at, name.substr(in)) : 0;
            if (at < text.size() && text[at] == '*') {
                afterStar = ++at;
                retry = in;
            } else if (taken > 0) {
                at = endOfOne(at);
                in += taken;
            } else if (afterStar != std::string::npos) {
                at = afterStar;
                in = ++retry;
            } else {
                return false;
            }
        }
        return text.find_first_not_of('*', at) == std::string::npos;
    }

    bool operator==(const NamePattern&) const = default;

private:
    explicit NamePattern(std::string text)
        : text(std::move(text))
    {
    }

    // Behind the bracket that closes the set; one that comes first in a set is one of its members.
    static std::size_t endOfSet(std::string_view text, std::size_t open)
    {
        const std::size_t first = open + (text.substr(open + 1).starts_with('!') ? 2 : 1);
        const std::size_t close = text.find(']', first + 1);
        return close == std::string_view::npos ? close : close + 1;
    }
    std::size_t endOfOne(std::size_t at) const
    {
        return text[at] == '[' ? endOfSet(text, at) : at + 1;
    }

    // How many bytes of the rest of a name the part of the pattern stands for; 0 if for none.
    std::size_t matchOne(std::size_t at, std::string_view rest) const
    {
        if (text[at] == '?')
            return lengthOfCharacter(rest);
        if (text[at] == '[')
            return isInSet(std::string_view(text).substr(at, endOfSet(text, at) - at), rest[0]);
        return text[at] == rest[0] ? 1 : 0;
    }
    static std::size_t lengthOfCharacter(std::string_view rest)
    {
        std::size_t length = 1;
        while (length < rest.size() && (static_cast<unsigned char>(rest[length]) & 0xc0) == 0x80)
            ++length;
        return length;
    }
    static bool isInSet(std::string_view set, char letter)
    {
        const bool others = set.starts_with("[!");
        const auto members = set.substr(others ? 2 : 1, set.size() - (others ? 3 : 2));
        bool found = false;
        for (std::size_t at = 0; at < members.size(); ++at) {
            const bool range = at + 2 < members.size() && members[at + 1] == '-';
            found = found || isBetween(members[at], letter, members[range ? at + 2 : at]);
            at += range ? 2 : 0;
        }
        return found != others;
    }
    static bool isBetween(char first, char letter, char last)
    {
        const auto value = [](char c) { return static_cast<unsigned char>(c); };
        return value(first) <= value(letter) && value(letter) <= value(last);
    }

    static constexpr std::size_t longest = 255;
    std::string text;
};

} // namespace tallowbay
