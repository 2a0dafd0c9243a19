#include "hotkeys/HotkeyConfig.h"

#include "platform/UserDefaults.h"

#include <cmath>
#include <limits>
#include <optional>

namespace tallowbay {

namespace {

using Dictionary = DefaultsValue::Dictionary;
using Number = std::uint32_t;

// Numbers that another program wrote may come as any kind of number, but mean the same only if
// nothing is lost. A truth value and a text are no numbers.
struct AsNumber {
    std::optional<Number> operator()(std::int64_t value) const
    {
        if (value < 0 || value > std::numeric_limits<Number>::max())
            return std::nullopt;
        return static_cast<Number>(value);
    }
    std::optional<Number> operator()(double value) const
    {
        const bool fits = value >= 0 && value <= std::numeric_limits<Number>::max();
        return fits && std::trunc(value) == value ? std::optional(static_cast<Number>(value))
                                                  : std::nullopt;
    }
    std::optional<Number> operator()(const auto&) const { return std::nullopt; }
};

std::optional<Number> number(const Dictionary& fields, const std::string& name)
{
    const auto field = fields.find(name);
    return field == fields.end() ? std::nullopt : std::visit(AsNumber{}, field->second.value);
}

std::optional<std::string> text(const Dictionary& fields, const std::string& name)
{
    const auto field = fields.find(name);
    if (field == fields.end())
        return std::nullopt;
    const auto* string = std::get_if<std::string>(&field->second.value);
    return string ? std::optional(*string) : std::nullopt;
}

} // namespace

void HotkeyConfig::save(UserDefaults& defaults, const std::string& key) const
{
    Dictionary fields;
    fields["keyCode"].value = std::int64_t{keyCode};
    fields["modifiers"].value = std::int64_t{modifiers};
    fields["displayString"].value = displayString;
    defaults.set(key, {std::move(fields)});
}

HotkeyConfig HotkeyConfig::load(
    const UserDefaults& defaults, const std::string& key, const HotkeyConfig& fallback)
{
    return stored(defaults, key).value_or(fallback);
}

std::optional<HotkeyConfig> HotkeyConfig::stored(
    const UserDefaults& defaults, const std::string& key)
{
    const auto value = defaults.value(key);
    const auto* fields = value ? std::get_if<Dictionary>(&value->value) : nullptr;
    if (!fields)
        return std::nullopt;
    const auto keyCode = number(*fields, "keyCode");
    const auto modifiers = number(*fields, "modifiers");
    const auto displayString = text(*fields, "displayString");
    if (!keyCode || !modifiers || !displayString)
        return std::nullopt;
    return HotkeyConfig{*keyCode, *modifiers, *displayString};
}

} // namespace tallowbay
