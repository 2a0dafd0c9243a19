#include "editor/strip/ThumbnailCaption.h"

#include "platform/Calendar.h"

#include <algorithm>
#include <optional>
#include <regex>
#include <unordered_map>
#include <utility>

namespace tallowbay {

namespace {

using namespace std::chrono;

constexpr const char* systemSpelling = R"((\d{4})-(\d{2})-(\d{2}) at (\d{2})\.(\d{2})\.\d{2})";

struct NameDate {
    year_month_day day;
    int hour = 0;
    int minute = 0;
};

unsigned number(const std::ssub_match& digits)
{
    return static_cast<unsigned>(std::stoul(digits.str()));
}

NameDate dateOf(const std::smatch& match)
{
    return {
        year_month_day(
            year(static_cast<int>(number(match[1]))), month(number(match[2])),
            std::chrono::day(number(match[3]))),
        static_cast<int>(number(match[4])), static_cast<int>(number(match[5]))};
}

bool hasFiveNumbers(const std::smatch& match)
{
    const auto isShortNumber = [](const std::ssub_match& group) {
        const std::string text = group.str();
        return !text.empty() && text.size() <= 4
            && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
    };
    return match.size() == 6 && std::all_of(match.begin() + 1, match.end(), isShortNumber);
}

std::string twelveHourClock(const NameDate& taken)
{
    const int hour = taken.hour == 0 ? 12 : taken.hour > 12 ? taken.hour - 12 : taken.hour;
    const std::string minutes = std::to_string(taken.minute);
    return std::to_string(hour) + ":" + (taken.minute < 10 ? "0" : "") + minutes
        + (taken.hour < 12 ? " AM" : " PM");
}

} // namespace

struct ThumbnailCaption::Patterns {
    explicit Patterns(const NameDatePatterns& further)
    {
        add(systemSpelling);
        for (const std::string& pattern : further)
            add(pattern);
    }

    void add(const std::string& pattern)
    try {
        all.emplace_back(pattern);
    } catch (const std::regex_error&) {
        // The platform's business; a caption is no reason to fail.
    }

    std::optional<NameDate> find(const std::string& name) const
    {
        std::smatch match;
        for (const std::regex& pattern : all) {
            if (std::regex_search(name, match, pattern) && hasFiveNumbers(match))
                return dateOf(match);
        }
        return std::nullopt;
    }

    std::vector<std::regex> all;
};

struct ThumbnailCaption::Kept {
    year_month_day day;
    std::unordered_map<std::string, std::string> captions; // by name
};

ThumbnailCaption::ThumbnailCaption(const Calendar& calendar, const NameDatePatterns& further)
    : calendar(calendar)
    , patterns(std::make_unique<Patterns>(further))
    , kept(std::make_unique<Kept>())
{
}

ThumbnailCaption::ThumbnailCaption(ThumbnailCaption&&) noexcept = default;
ThumbnailCaption::~ThumbnailCaption() = default;

std::string ThumbnailCaption::parseTime(const std::filesystem::path& url, WallTime now) const
{
    const year_month_day today = calendar.dayOf(now);
    if (std::exchange(kept->day, today) != today)
        kept->captions.clear();
    const auto [caption, isNew] = kept->captions.try_emplace(url.filename().native());
    if (isNew)
        caption->second = captionOn(today, caption->first);
    return caption->second;
}

std::string ThumbnailCaption::captionOn(year_month_day today, const std::string& name) const
{
    const auto taken = patterns->find(name);
    if (!taken || !taken->day.ok())
        return {};
    const days ago = sys_days(today) - sys_days(taken->day);
    if (ago == days(0))
        return twelveHourClock(*taken);
    return ago == days(1) ? "Yesterday" : calendar.monthAndDay(taken->day);
}

} // namespace tallowbay
