#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tallowbay::posix {

// The texts in which desktops keep their settings. Thread: any.

// The value of "key=value" in a "[group]", or before the first group where that is empty. The last
// one counts. Marks that are written after a key, such as in "key[$e]", do not matter.
std::optional<std::string> keyFileValue(
    std::string_view text, std::string_view group, std::string_view key);

// A folder as a desktop writes it down: a file URL, an absolute path, or one that begins with "~"
// or "$HOME". Empty for anything else.
std::optional<std::filesystem::path> folderFromText(
    std::string text, const std::filesystem::path& home);

// A folder in the text of user-dirs.dirs, by its key such as "XDG_PICTURES_DIR". Empty if it names
// none, or the home folder itself, which stands for none.
std::optional<std::filesystem::path> userFolder(
    std::string_view userDirs, std::string_view key, const std::filesystem::path& home);

// A text as key files hold it, without its quotes and backslashes.
std::string plainSetting(std::string_view written);

// A text as gsettings prints it, in quotes. Empty optional if it is none.
std::optional<std::string> unquotedSetting(std::string_view printed);

} // namespace tallowbay::posix
