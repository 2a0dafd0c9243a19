#pragma once

#include "platform/Calendar.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>

namespace tallowbay::contract {

// Every calendar keeps its header's promises. A backend speaks English and offers:
//   const Calendar& calendar();
//   void moveTo(std::chrono::minutes eastOfUtc);   the user is in a zone without summer time
template <typename Backend> class CalendarContract : public testing::Test {
protected:
    static constexpr std::chrono::year_month_day day{
        std::chrono::year(2026), std::chrono::month(1), std::chrono::day(5)};

    // After the midnight of UTC with which that day begins.
    static WallTime after(std::chrono::minutes time) { return std::chrono::sys_days(day) + time; }
    static std::chrono::year_month_day daysLater(int count)
    {
        return std::chrono::sys_days(day) + std::chrono::days(count);
    }

    Backend backend;
    const Calendar& calendar = backend.calendar();
};

TYPED_TEST_SUITE_P(CalendarContract);

TYPED_TEST_P(CalendarContract, CountsDaysFromTheMidnightOfTheUsersZone)
{
    using namespace std::chrono_literals;
    for (const std::chrono::minutes east : {0min, 13h + 0min, 5h + 30min, -8h + 0min}) {
        this->backend.moveTo(east);
        const WallTime midnight = this->after(-east);
        EXPECT_EQ(this->calendar.dayOf(midnight - 1ms), this->daysLater(-1)) << east.count();
        EXPECT_EQ(this->calendar.dayOf(midnight), this->daysLater(0)) << east.count();
        EXPECT_EQ(this->calendar.dayOf(midnight + 24h - 1ms), this->daysLater(0)) << east.count();
        EXPECT_EQ(this->calendar.dayOf(midnight + 24h), this->daysLater(1)) << east.count();
    }
}

TYPED_TEST_P(CalendarContract, KnowsTheDaysBefore1970AndThoseOfLeapYears)
{
    using namespace std::chrono;
    this->backend.moveTo(minutes(0));
    for (const auto date :
         {year(1969) / December / 31, year(2024) / February / 29, year(2100) / February / 28})
        EXPECT_EQ(this->calendar.dayOf(sys_days(date) + hours(24) - milliseconds(1)), date);
}

TYPED_TEST_P(CalendarContract, WritesMonthAndDayShort)
{
    using namespace std::chrono;
    EXPECT_EQ(this->calendar.monthAndDay(year(2024) / March / 4), "Mar 4");
    EXPECT_EQ(this->calendar.monthAndDay(year(2024) / February / 29), "Feb 29");
    EXPECT_EQ(this->calendar.monthAndDay(year(2025) / December / 31), "Dec 31");
}

TYPED_TEST_P(CalendarContract, HasTwelveMonths)
{
    std::set<std::string> dates;
    for (unsigned month = 1; month <= 12; ++month)
        dates.insert(this->calendar.monthAndDay(
            {std::chrono::year(2026), std::chrono::month(month), std::chrono::day(1)}));
    EXPECT_EQ(dates.size(), 12u);
}

REGISTER_TYPED_TEST_SUITE_P(
    CalendarContract, CountsDaysFromTheMidnightOfTheUsersZone,
    KnowsTheDaysBefore1970AndThoseOfLeapYears, WritesMonthAndDayShort, HasTwelveMonths);

} // namespace tallowbay::contract
