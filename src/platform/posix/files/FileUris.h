#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowbay::posix {

// The forms in which desktop programs exchange lists of files.
//
// A name may hold any byte but zero and the slash; in a URI every byte that is neither a letter, a
// digit nor one of "-._~/" is percent-encoded.

std::string fileUri(const std::filesystem::path& absolute);

// The path of a local file: the host is absent, "localhost" or this machine. Empty for everything
// else, for a malformed escape and for a zero byte.
std::optional<std::filesystem::path> localPath(std::string_view uri);

// text/uri-list: every line, the last one too, ends with CR LF.
std::string uriList(const std::vector<std::filesystem::path>&);

// x-special/gnome-copied-files and its kin: "copy", then one URI a line, no line feed at the end.
std::string copiedFiles(const std::vector<std::filesystem::path>&);

// The local files of either form, in their order; a file manager's "cut" counts as "copy". Lines
// that are comments, empty or no local file are passed over.
std::vector<std::filesystem::path> localFiles(std::string_view list);

} // namespace tallowbay::posix
