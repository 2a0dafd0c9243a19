#include "platform/posix/preferences/JsonUserDefaults.h"

#include "platform/posix/preferences/DefaultsJson.h"

#include <utility>

namespace tallowbay::posix {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

constexpr auto ownDomain = "com.quarnel.tallowbay";
constexpr std::size_t longestDomainName = 200;

} // namespace

JsonUserDefaults::JsonUserDefaults(fs::path path)
    : file(std::move(path))
{
}

std::optional<DefaultsValue> JsonUserDefaults::value(const std::string& key) const
{
    const auto& document = file.read();
    const auto member = document.find(key);
    return member == document.end() ? std::nullopt : fromJson(*member);
}

void JsonUserDefaults::set(const std::string& key, DefaultsValue value)
{
    write(key, value);
}

void JsonUserDefaults::remove(const std::string& key)
{
    erase(key);
}

JsonUserDefaults::Outcome JsonUserDefaults::write(
    const std::string& key, const DefaultsValue& value)
{
    const auto written = file.update([&](json& document) { document[key] = toJson(value); });
    return written ? Outcome::done : Outcome::refused;
}

JsonUserDefaults::Outcome JsonUserDefaults::erase(const std::string& key)
{
    bool present = false;
    const auto written = file.update([&](json& document) { present = document.erase(key) > 0; });
    return !written ? Outcome::refused : present ? Outcome::done : Outcome::absent;
}

JsonUserDefaults::Outcome JsonUserDefaults::eraseAll()
{
    bool present = false;
    const auto written = file.update([&](json& document) {
        present = !document.empty();
        document = json::object();
    });
    return !written ? Outcome::refused : present ? Outcome::done : Outcome::absent;
}

std::optional<std::string> JsonUserDefaults::text() const
{
    const auto& document = file.read();
    return document.empty() ? std::nullopt : std::optional(toText(document));
}

std::optional<std::string> JsonUserDefaults::text(const std::string& key) const
{
    const auto& document = file.read();
    const auto member = document.find(key);
    return member == document.end() ? std::nullopt : std::optional(toText(*member));
}

JsonUserDefaultsStore::JsonUserDefaultsStore(const fs::path& configFolder)
    : folder(configFolder / "tallowbay")
    , own(pathOf(ownDomain))
{
}

std::unique_ptr<UserDefaults> JsonUserDefaultsStore::open(const std::string& domain)
{
    return std::make_unique<JsonUserDefaults>(pathOf(domain));
}

fs::path JsonUserDefaultsStore::pathOf(const std::string& domain) const
{
    return isDomainName(domain) ? folder / (domain + ".json") : fs::path();
}

bool JsonUserDefaultsStore::isDomainName(std::string_view name)
{
    constexpr std::string_view notInNames("/\0", 2);
    return !name.empty() && name.size() <= longestDomainName && name.front() != '.'
        && name.find_first_of(notInNames) == name.npos;
}

} // namespace tallowbay::posix
