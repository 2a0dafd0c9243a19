#include "capture/ScreenshotNames.h"

#include "base/AsciiText.h"
#include "base/PreferenceKeys.h"
#include "capture/ImageCompressor.h"
#include "platform/Console.h"
#include "platform/UserDefaults.h"

#include <algorithm>
#include <regex>

namespace tallowbay {

namespace fs = std::filesystem;

namespace {

constexpr const char* blanks = " \t\n";

std::string inQuotes(const std::string& text)
{
    return "\"" + text + "\"";
}

} // namespace

struct ScreenshotNames::ToolPatterns {
    explicit ToolPatterns(const std::vector<std::string>& patterns)
    {
        for (const std::string& pattern : patterns)
            add(pattern);
    }

    void add(const std::string& pattern)
    try {
        all.emplace_back(pattern, std::regex::ECMAScript | std::regex::nosubs);
    } catch (const std::regex_error&) {
        // The platform's business; the other names still count.
    }

    bool match(const std::string& stem) const
    {
        return std::ranges::any_of(
            all, [&](const std::regex& pattern) { return std::regex_match(stem, pattern); });
    }

    std::vector<std::regex> all;
};

ScreenshotNames::ScreenshotNames(
    const std::vector<std::string>& toolPatterns, const UserDefaults& preferences, Console& console)
    : preferences(preferences)
    , console(console)
    , tools(std::make_unique<ToolPatterns>(toolPatterns))
{
}

ScreenshotNames::~ScreenshotNames() = default;

void ScreenshotNames::refresh()
{
    const auto stored = preferences.value(preference::screenshotNamePatterns);
    const auto* text = stored ? std::get_if<std::string>(&stored->value) : nullptr;
    const std::string current = text ? *text : stored ? "\n(no text)" : "";
    if (userText == current)
        return;
    userText = current;
    userPatterns.clear();
    userProblems.clear();
    if (stored && !text)
        return complain("is no text, and is not used");
    for (std::size_t begin = 0; begin < current.size();) {
        const auto end = std::min(current.find(',', begin), current.size());
        addUserPattern(
            std::string(trimmed(std::string_view(current).substr(begin, end - begin), blanks)));
        begin = end + 1;
    }
}

void ScreenshotNames::addUserPattern(std::string text)
{
    if (text.empty())
        return;
    auto [pattern, problem] = NamePattern::parse(text);
    if (pattern)
        userPatterns.push_back(std::move(*pattern));
    else
        complain(inQuotes(text) + " " + problem + ", and is not used");
}

void ScreenshotNames::complain(const std::string& sentence)
{
    userProblems.push_back(std::string(preference::screenshotNamePatterns) + ": " + sentence);
    console.line(userProblems.back());
}

bool ScreenshotNames::match(const fs::path& path) const
{
    const std::string stem = path.stem().native();
    return hasScreenshotName(path) || tools->match(stem)
        || std::ranges::any_of(userPatterns, [&](const NamePattern& pattern) {
               return pattern.matches(stem) || pattern.matches(path.filename().native());
           });
}

bool hasScreenshotName(const fs::path& path)
{
    const std::string stem = path.stem().string();
    return stem.starts_with("Screenshot ") || stem.starts_with("Screen Shot ");
}

bool hasScreenshotExtension(const fs::path& path)
{
    const std::string extension = lowercaseExtension(path);
    return extension == "png" || extension == "jpg" || extension == "jpeg";
}

} // namespace tallowbay
