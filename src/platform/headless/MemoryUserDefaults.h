#pragma once

#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"

#include <map>

namespace tallowbay::headless {

class MemoryUserDefaults final : public UserDefaults {
public:
    using Values = std::map<std::string, DefaultsValue>;

    explicit MemoryUserDefaults(Values& values)
        : values(values)
    {
    }

    std::optional<DefaultsValue> value(const std::string& key) const override;
    void set(const std::string& key, DefaultsValue value) override;
    void remove(const std::string& key) override { values.erase(key); }

private:
    Values& values;
};

// Domains share their values, as those of a disk would.
class MemoryUserDefaultsStore final : public UserDefaultsStore {
public:
    UserDefaults& standard() override { return own; }
    std::unique_ptr<UserDefaults> open(const std::string& domain) override;

private:
    std::map<std::string, MemoryUserDefaults::Values> domains;
    MemoryUserDefaults own{domains["com.quarnel.tallowbay"]};
};

} // namespace tallowbay::headless
