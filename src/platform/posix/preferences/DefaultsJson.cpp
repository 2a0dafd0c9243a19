#include "platform/posix/preferences/DefaultsJson.h"

#include <charconv>

namespace tallowbay::posix {

using nlohmann::json;

namespace {

constexpr auto bytesKey = "$bytes";

bool isUtf8(const std::string& text)
{
    const auto written = json(text).dump(-1, ' ', false, json::error_handler_t::ignore);
    return json::parse(written) == text;
}

json bytesToJson(const std::string& bytes)
{
    constexpr auto digits = "0123456789abcdef";
    std::string hexadecimal;
    for (const unsigned char byte : bytes) {
        hexadecimal += digits[byte / 16];
        hexadecimal += digits[byte % 16];
    }
    return {{bytesKey, hexadecimal}};
}

// Empty if it is an ordinary dictionary.
std::optional<std::string> bytesFromJson(const json& object)
{
    const auto member = object.find(bytesKey);
    if (object.size() != 1 || member == object.end() || !member->is_string())
        return std::nullopt;
    const auto& hexadecimal = member->get_ref<const std::string&>();
    if (hexadecimal.size() % 2 != 0)
        return std::nullopt;
    std::string bytes;
    for (const char* pair = hexadecimal.data(); pair != hexadecimal.data() + hexadecimal.size();
         pair += 2) {
        unsigned char byte = 0;
        if (std::from_chars(pair, pair + 2, byte, 16).ptr != pair + 2)
            return std::nullopt;
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

DefaultsValue::Dictionary dictionaryFromJson(const json& object)
{
    DefaultsValue::Dictionary dictionary;
    for (const auto& [key, member] : object.items())
        if (auto value = fromJson(member))
            dictionary.emplace(key, std::move(*value));
    return dictionary;
}

struct ToJson {
    json operator()(const std::string& text) const
    {
        return isUtf8(text) ? json(text) : bytesToJson(text);
    }
    json operator()(const DefaultsValue::Dictionary& dictionary) const
    {
        auto object = json::object();
        for (const auto& [key, member] : dictionary)
            object[key] = toJson(member);
        return object;
    }
    json operator()(auto plain) const { return plain; }
};

} // namespace

json toJson(const DefaultsValue& value)
{
    return std::visit(ToJson(), value.value);
}

std::optional<DefaultsValue> fromJson(const json& value)
{
    constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    switch (value.type()) {
    case json::value_t::boolean:
        return DefaultsValue{value.get<bool>()};
    case json::value_t::number_integer:
        return DefaultsValue{value.get<std::int64_t>()};
    case json::value_t::number_float:
        return DefaultsValue{value.get<double>()};
    case json::value_t::string:
        return DefaultsValue{value.get<std::string>()};
    case json::value_t::number_unsigned:
        if (value.get<std::uint64_t>() > largest)
            return DefaultsValue{value.get<double>()};
        return DefaultsValue{value.get<std::int64_t>()};
    case json::value_t::object:
        if (auto bytes = bytesFromJson(value))
            return DefaultsValue{std::move(*bytes)};
        return DefaultsValue{dictionaryFromJson(value)};
    default:
        return std::nullopt;
    }
}

std::string toText(const json& document)
{
    return document.dump(2, ' ', false, json::error_handler_t::replace) + '\n';
}

} // namespace tallowbay::posix
