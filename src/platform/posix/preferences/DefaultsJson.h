#pragma once

#include "platform/UserDefaults.h"

#include <nlohmann/json.hpp>

namespace tallowbay::posix {

// Preferences as JSON. Text that is no UTF-8, such as an old file name, cannot stand in JSON: it
// becomes {"$bytes": "2fe9"}, its bytes in hexadecimal. A number that is not finite becomes null.

nlohmann::json toJson(const DefaultsValue&);

// Empty for what no preference can be: null, a list. Such members of a dictionary are left out.
std::optional<DefaultsValue> fromJson(const nlohmann::json&);

// For people to read, with a line feed at the end. Keys that are no UTF-8 have each offending byte
// replaced.
std::string toText(const nlohmann::json&);

} // namespace tallowbay::posix
