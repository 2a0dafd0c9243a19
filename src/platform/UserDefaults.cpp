#include "platform/UserDefaults.h"

#include "base/AsciiText.h"

namespace tallowbay {

namespace {

struct AsBool {
    bool fallback;

    bool operator()(bool value) const { return value; }
    bool operator()(std::int64_t value) const { return value != 0; }
    bool operator()(double value) const { return value != 0; }
    bool operator()(std::string value) const
    {
        value = asciiLowercase(std::move(value));
        return value == "yes" || value == "true" || value == "1";
    }
    bool operator()(const DefaultsValue::Dictionary&) const { return fallback; }
};

} // namespace

bool boolValue(const UserDefaults& defaults, const std::string& key, bool fallback)
{
    const auto stored = defaults.value(key);
    return stored ? std::visit(AsBool{fallback}, stored->value) : fallback;
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
