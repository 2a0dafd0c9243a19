#include "platform/headless/MemoryUserDefaults.h"

namespace tallowbay::headless {

std::optional<DefaultsValue> MemoryUserDefaults::value(const std::string& key) const
{
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

void MemoryUserDefaults::set(const std::string& key, DefaultsValue value)
{
    values.insert_or_assign(key, std::move(value));
}

std::unique_ptr<UserDefaults> MemoryUserDefaultsStore::open(const std::string& domain)
{
    return std::make_unique<MemoryUserDefaults>(domains[domain]);
}

} // namespace tallowbay::headless
