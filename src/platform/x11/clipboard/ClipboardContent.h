#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tallowbay::x11 {

// What we offer to those who paste: nothing, files or text.
using ClipboardContent =
    std::variant<std::monostate, std::vector<std::filesystem::path>, std::string>;

// One form of the content, as it goes over the wire.
struct ClipboardForm {
    std::string_view type; // mostly the name that it was asked for by
    std::string bytes;
};

// The names of all forms of the content, the best first. Files have no form as text and text none
// as files: programs that know both would paste the wrong one, or both.
std::vector<std::string_view> formNames(const ClipboardContent&);

// Empty if the content has no such form.
std::optional<ClipboardForm> formOf(const ClipboardContent&, std::string_view name);

} // namespace tallowbay::x11
