#include "platform/posix/files/FileUris.h"

#include "base/AsciiText.h"

#include <algorithm>
#include <array>
#include <climits>

#include <unistd.h>

namespace tallowbay::posix {
namespace {

constexpr std::string_view scheme = "file://";

// Not isalnum(): a locale must not decide what a URI is.
bool isPlain(char letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z')
        || (letter >= '0' && letter <= '9')
        || std::string_view("-._~/").find(letter) != std::string_view::npos;
}

int hexDigit(char letter)
{
    constexpr std::string_view digits = "0123456789abcdef";
    const char lower = letter >= 'A' && letter <= 'F' ? char(letter - 'A' + 'a') : letter;
    const std::size_t value = digits.find(lower);
    return value == std::string_view::npos ? -1 : int(value);
}

std::optional<std::string> decoded(std::string_view text)
{
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            bytes += text[at];
            continue;
        }
        const int high = at + 2 < text.size() ? hexDigit(text[at + 1]) : -1;
        const int low = at + 2 < text.size() ? hexDigit(text[at + 2]) : -1;
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes += char(high * 16 + low);
        at += 2;
    }
    return bytes;
}

bool equalIgnoringCase(std::string_view one, std::string_view other)
{
    return asciiLowercase(std::string(one)) == asciiLowercase(std::string(other));
}

std::string hostName()
{
    std::array<char, HOST_NAME_MAX + 1> name{};
    gethostname(name.data(), name.size() - 1);
    return name.data();
}

bool isThisMachine(std::string_view host)
{
    return host.empty() || equalIgnoringCase(host, "localhost")
        || equalIgnoringCase(host, hostName());
}

} // namespace

std::string fileUri(const std::filesystem::path& absolute)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri(scheme);
    for (const char letter : absolute.native()) {
        const auto byte = static_cast<unsigned char>(letter);
        if (isPlain(letter))
            uri += letter;
        else
            uri += {'%', digits[byte / 16], digits[byte % 16]};
    }
    return uri;
}

std::optional<std::filesystem::path> localPath(std::string_view uri)
{
    if (!equalIgnoringCase(uri.substr(0, scheme.size()), scheme))
        return std::nullopt;
    const std::size_t slash = uri.find('/', scheme.size());
    if (slash == std::string_view::npos
        || !isThisMachine(uri.substr(scheme.size(), slash - scheme.size())))
        return std::nullopt;
    const auto bytes = decoded(uri.substr(slash));
    if (!bytes || bytes->find('\0') != std::string::npos)
        return std::nullopt;
    return *bytes;
}

std::string uriList(const std::vector<std::filesystem::path>& files)
{
    std::string list;
    for (const auto& file : files)
        list += fileUri(file) + "\r\n";
    return list;
}

std::string copiedFiles(const std::vector<std::filesystem::path>& files)
{
    std::string list = "copy";
    for (const auto& file : files)
        list += "\n" + fileUri(file);
    return list;
}

std::vector<std::filesystem::path> localFiles(std::string_view list)
{
    std::vector<std::filesystem::path> files;
    while (!list.empty()) {
        const std::size_t end =
            std::min(list.find_first_of(std::string_view("\r\n\0", 3)), list.size());
        if (auto file = localPath(list.substr(0, end)))
            files.push_back(std::move(*file));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return files;
}

} // namespace tallowbay::posix
