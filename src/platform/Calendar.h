#pragma once

#include "platform/Clock.h"

#include <chrono>
#include <string>

namespace tallowbay {

// Days as the user counts them: by the time zone and the language of the session.
//
// Thread: main queue.
class Calendar {
public:
    virtual ~Calendar() = default;

    // The day on which this moment falls here, whatever the day's length. Follows a change of the
    // time zone.
    virtual std::chrono::year_month_day dayOf(WallTime) const = 0;

    // Month and day, short, in the language's own words and order: "Mar 4". The day is one that
    // exists.
    virtual std::string monthAndDay(std::chrono::year_month_day) const = 0;
};

} // namespace tallowbay
