#pragma once

#include "platform/Clock.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace tallowbay {

class Calendar;

// Where a screenshot's name says when it was taken: regular expressions (ECMAScript) with five
// groups, which are year, month, day, hour and minute.
using NameDatePatterns = std::vector<std::string>;

// When a screenshot was taken, as a thumbnail says it: the time if it was today ("2:05 PM"), the
// word "Yesterday", else the day ("Mar 4"). Empty where the name does not tell, or tells a day that
// does not exist.
//
// The system's own spelling ("2026-01-05 at 10.31.12") is looked for first, then the patterns in
// their order. What was found is kept for the day, since every painting of a cell asks again.
//
// Thread: main queue.
class ThumbnailCaption {
public:
    // The calendar outlives this object. A pattern that is no regular expression is left out.
    ThumbnailCaption(const Calendar&, const NameDatePatterns&);
    ThumbnailCaption(ThumbnailCaption&&) noexcept;
    ~ThumbnailCaption();

    std::string parseTime(const std::filesystem::path& url, WallTime now) const;

private:
    struct Patterns;
    struct Kept;

    std::string captionOn(std::chrono::year_month_day today, const std::string& name) const;

    const Calendar& calendar;
    std::unique_ptr<const Patterns> patterns;
    std::unique_ptr<Kept> kept;
};

} // namespace tallowbay
