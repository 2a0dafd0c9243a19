#pragma once

#include "platform/Calendar.h"

#include <array>

namespace tallowbay::headless {

// A time zone that is a fixed distance from UTC, and English.
class FixedCalendar : public Calendar {
public:
    std::chrono::year_month_day dayOf(WallTime moment) const override
    {
        return std::chrono::floor<std::chrono::days>(moment + eastOfUtc);
    }
    std::string monthAndDay(std::chrono::year_month_day day) const override
    {
        constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
        return std::string(months.at(unsigned(day.month()) - 1)) + " "
            + std::to_string(unsigned(day.day()));
    }

    std::chrono::minutes eastOfUtc{0};
};

} // namespace tallowbay::headless
