#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowbay::x11 {

// Finds a text, such as "Net/ThemeName", among the settings that GTK desktops publish in a window
// property. Empty if there is none of that name, or the property is damaged before it.
std::optional<std::string> textOfXSettings(std::string_view property, std::string_view name);

} // namespace tallowbay::x11
