#include "platform/UserDefaults.h"

#include "base/AsciiText.h"

namespace tallowbay {

namespace {

struct AsBool {
    bool operator()(bool value) const { return value; }
    bool operator()(std::int64_t value) const { return value != 0; }
    bool operator()(double value) const { return value != 0; }
    bool operator()(std::string value) const
    {
        value = asciiLowercase(std::move(value));
        return value == "yes" || value == "true" || value == "1";
    }
    bool operator()(const DefaultsValue::Dictionary&) const { return false; }
};

} // namespace

bool boolValue(const UserDefaults& defaults, const preference::Flag& flag)
{
    const auto stored = defaults.value(flag.key);
    return stored ? std::visit(AsBool{}, stored->value) : flag.whenAbsent;
}

std::optional<std::string> stringValue(const UserDefaults& defaults, const std::string& key)
{
    const auto stored = defaults.value(key);
    if (!stored)
        return std::nullopt;
    const auto* text = std::get_if<std::string>(&stored->value);
    return text ? std::optional(*text) : std::nullopt;
}

} // namespace tallowbay
