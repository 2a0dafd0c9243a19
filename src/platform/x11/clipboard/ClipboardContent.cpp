#include "platform/x11/clipboard/ClipboardContent.h"

#include "platform/posix/files/FileUris.h"

#include <algorithm>

namespace tallowbay::x11 {
namespace {

using Files = std::vector<std::filesystem::path>;

const std::vector<std::string_view> fileForms = {
    "text/uri-list", "x-special/gnome-copied-files", "x-special/mate-copied-files"};
const std::vector<std::string_view> textForms = {
    "UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING", "TEXT"};

// What Latin 1 cannot express becomes a question mark.
std::string latin1(std::string_view utf8)
{
    std::string result;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto first = static_cast<unsigned char>(utf8[at++]);
        if (first < 0x80) {
            result += char(first);
            continue;
        }
        std::size_t length = 0;
        while (at + length < utf8.size() && (utf8[at + length] & 0xc0) == 0x80)
            ++length;
        const bool fits = (first == 0xc2 || first == 0xc3) && length == 1;
        result += fits ? char((first << 6) | (utf8[at] & 0x3f)) : '?';
        at += length;
    }
    return result;
}

ClipboardForm fileForm(const Files& files, std::string_view name)
{
    return {name, name == "text/uri-list" ? posix::uriList(files) : posix::copiedFiles(files)};
}

ClipboardForm textForm(const std::string& text, std::string_view name)
{
    if (name == "STRING")
        return {name, latin1(text)};
    return {name == "TEXT" ? "UTF8_STRING" : name, text};
}

} // namespace

std::vector<std::string_view> formNames(const ClipboardContent& content)
{
    if (std::holds_alternative<Files>(content))
        return fileForms;
    return std::holds_alternative<std::string>(content) ? textForms
                                                        : std::vector<std::string_view>();
}

std::optional<ClipboardForm> formOf(const ClipboardContent& content, std::string_view name)
{
    const auto names = formNames(content);
    if (std::ranges::find(names, name) == names.end())
        return std::nullopt;
    if (const auto* files = std::get_if<Files>(&content))
        return fileForm(*files, name);
    return textForm(std::get<std::string>(content), name);
}

} // namespace tallowbay::x11
