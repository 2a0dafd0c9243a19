#pragma once

#include "base/PreferenceKeys.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>

namespace tallowbay {

// One stored preference. The type counts: a number written as text is text.
struct DefaultsValue {
    using Dictionary = std::map<std::string, DefaultsValue>;
    std::variant<bool, std::int64_t, double, std::string, Dictionary> value;

    bool operator==(const DefaultsValue&) const = default;
};

// The preferences of one domain.
//
// Thread: main queue. Another process may write the same domain at any time; a read sees what was
// written before it. A write keeps every key that it does not name, is on the disk when it
// returns, and is lost silently if the disk refuses it, or if the domain grows too large to be read
// again. A file that cannot be understood reads as empty, which the user is told, and is kept
// aside, not lost, when something is written.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    // Empty if the key is absent; a value of an unexpected type is returned as it stands.
    virtual std::optional<DefaultsValue> value(const std::string& key) const = 0;
    virtual void set(const std::string& key, DefaultsValue) = 0;
    virtual void remove(const std::string& key) = 0;
};

// A boolean as the user may have written it: a number counts as true unless it is zero, a text if
// it reads "YES", "true" or "1" (any case), and nothing else does.
bool boolValue(const UserDefaults&, const preference::Flag&);

// Empty if the key is absent or holds no text.
std::optional<std::string> stringValue(const UserDefaults&, const std::string& key);

} // namespace tallowbay
