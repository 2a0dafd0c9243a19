#pragma once

#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"
#include "platform/posix/preferences/JsonDomainFile.h"

#include <filesystem>
#include <string_view>

namespace tallowbay::posix {

// A domain kept as JSON, one file for each. What no preference can be, such as a list, survives in
// the file and reads as absent.
//
// Thread: one at a time.
class JsonUserDefaults final : public UserDefaults {
public:
    // An empty path makes a domain that is empty and keeps nothing.
    explicit JsonUserDefaults(std::filesystem::path);

    std::optional<DefaultsValue> value(const std::string& key) const override;
    void set(const std::string& key, DefaultsValue) override;
    void remove(const std::string& key) override;

    // The same, for those who want to know what came of it.
    enum class Outcome { done, absent, refused };
    Outcome write(const std::string& key, const DefaultsValue&);
    Outcome erase(const std::string& key);
    Outcome eraseAll();

    // As JSON, for people to read; empty if there is nothing. That of one key includes what no
    // preference can be.
    std::optional<std::string> text() const;
    std::optional<std::string> text(const std::string& key) const;

private:
    JsonDomainFile file;
};

// All domains of the user.
class JsonUserDefaultsStore final : public UserDefaultsStore {
public:
    // The folder that holds the settings of every program, not of ours alone.
    explicit JsonUserDefaultsStore(const std::filesystem::path& configFolder);

    UserDefaults& standard() override { return own; }

    // A domain whose name cannot be that of a file is empty and keeps nothing.
    std::unique_ptr<UserDefaults> open(const std::string& domain) override;

    std::filesystem::path pathOf(const std::string& domain) const;
    static bool isDomainName(std::string_view);

private:
    const std::filesystem::path folder;
    JsonUserDefaults own;
};

} // namespace tallowbay::posix
