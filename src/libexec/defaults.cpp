// Reads and writes the preferences of a domain from the command line.

#include "base/AsciiText.h"
#include "platform/posix/Environment.h"
#include "platform/posix/preferences/JsonUserDefaults.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iostream>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace {

using namespace tallowbay;
using posix::JsonUserDefaults;
using posix::JsonUserDefaultsStore;
using Arguments = std::vector<std::string>;
using Outcome = JsonUserDefaults::Outcome;

constexpr int usageError = 2;

constexpr auto usage = R"(usage: defaults write DOMAIN KEY VALUE
       defaults write DOMAIN KEY -bool|-int|-float|-string VALUE
       defaults delete DOMAIN [KEY]
       defaults read DOMAIN [KEY]
)";

int complain(const std::string& message)
{
    std::cerr << "defaults: " << message << '\n';
    return 1;
}

int explainUsage()
{
    std::cerr << usage;
    return usageError;
}

std::optional<DefaultsValue> boolean(std::string text)
{
    text = asciiLowercase(std::move(text));
    if (text == "yes" || text == "true" || text == "1")
        return DefaultsValue{true};
    if (text == "no" || text == "false" || text == "0")
        return DefaultsValue{false};
    return std::nullopt;
}

template <typename Number> std::optional<DefaultsValue> number(const std::string& text)
{
    Number value{};
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end || !std::isfinite(static_cast<double>(value)))
        return std::nullopt;
    return DefaultsValue{value};
}

bool isType(const std::string& text)
{
    return text == "-bool" || text == "-int" || text == "-float" || text == "-string";
}

std::optional<DefaultsValue> typedValue(const std::string& type, const std::string& text)
{
    if (type == "-bool")
        return boolean(text);
    if (type == "-int")
        return number<std::int64_t>(text);
    if (type == "-float")
        return number<double>(text);
    return DefaultsValue{text};
}

// What stands after the key; empty if it makes no sense.
std::optional<DefaultsValue> valueOf(const Arguments& words)
{
    if (words.size() == 1 && !isType(words[0]))
        return DefaultsValue{words[0]};
    if (words.size() == 2 && isType(words[0]))
        return typedValue(words[0], words[1]);
    return std::nullopt;
}

int finish(Outcome outcome, const std::string& what)
{
    if (outcome == Outcome::absent)
        return complain(what + " does not exist");
    if (outcome == Outcome::refused)
        return complain(what + " cannot be written");
    return 0;
}

// A text stands alone, a truth as 1 or 0, anything else as JSON.
std::optional<std::string> readable(const JsonUserDefaults& domain, const std::string& key)
{
    const auto value = domain.value(key);
    if (value && std::holds_alternative<std::string>(value->value))
        return std::get<std::string>(value->value) + '\n';
    if (value && std::holds_alternative<bool>(value->value))
        return std::get<bool>(value->value) ? "1\n" : "0\n";
    return domain.text(key);
}

int print(const std::optional<std::string>& text, const std::string& what)
{
    if (!text)
        return complain(what + " does not exist");
    std::cout << *text << std::flush;
    return std::cout ? 0 : complain("the output cannot be written");
}

int run(const Arguments& words)
{
    if (words.size() < 2)
        return explainUsage();
    const auto& [verb, name] = std::tie(words[0], words[1]);
    if (!JsonUserDefaultsStore::isDomainName(name))
        return complain("\"" + name + "\" is no domain name");
    const JsonUserDefaultsStore store(posix::environmentConfigFolder());
    JsonUserDefaults domain(store.pathOf(name));
    const auto whole = "the domain " + name;
    const auto pair = words.size() > 2 ? "the key " + words[2] + " of " + whole : "";

    if (verb == "read" && words.size() == 2)
        return print(domain.text(), whole);
    if (verb == "read" && words.size() == 3)
        return print(readable(domain, words[2]), pair);
    if (verb == "delete" && words.size() == 2)
        return finish(domain.eraseAll(), whole);
    if (verb == "delete" && words.size() == 3)
        return finish(domain.erase(words[2]), pair);
    if (verb == "write" && words.size() > 3)
        if (const auto value = valueOf({words.begin() + 3, words.end()}))
            return finish(domain.write(words[2], *value), pair);
    return explainUsage();
}

} // namespace

int main(int count, char** words)
{
    return run({words + 1, words + count});
}
