#include "platform/posix/PosixCalendar.h"

#include "platform/contract/CalendarContract.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>

namespace tallowbay::posix {
namespace {

using namespace std::chrono;

// An environment variable for the time of a test.
class Variable {
public:
    Variable(const char* name, const char* value)
        : name(name)
    {
        if (const char* present = std::getenv(name))
            before = present;
        ::setenv(name, value, 1);
    }
    ~Variable()
    {
        if (before)
            ::setenv(name, before->c_str(), 1);
        else
            ::unsetenv(name);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* name;
    std::optional<std::string> before;
};

class PosixCalendarBackend {
public:
    const Calendar& calendar() { return posix; }
    void moveTo(minutes eastOfUtc)
    {
        // The text tells how far west it is.
        std::array<char, 16> text{};
        std::snprintf(
            text.data(), text.size(), "XXX%c%02d:%02d", eastOfUtc.count() > 0 ? '-' : '+',
            int(std::abs(eastOfUtc.count()) / 60), int(std::abs(eastOfUtc.count()) % 60));
        zone.reset();
        zone.emplace("TZ", text.data());
    }

private:
    const Variable language{"LC_ALL", "C"};
    std::optional<Variable> zone;
    const PosixCalendar posix;
};

WallTime utc(year_month_day day, hours hour)
{
    return sys_days(day) + hour;
}

TEST(PosixCalendarTest, KnowsTheDayInTheUsersTimeZone)
{
    const Variable zone("TZ", "Pacific/Auckland");
    EXPECT_EQ(PosixCalendar().dayOf(utc(2026y / 1 / 5, 20h)), 2026y / 1 / 6);
}

TEST(PosixCalendarTest, FollowsAChangeOfTheTimeZone)
{
    const PosixCalendar calendar;
    const WallTime moment = utc(2026y / 1 / 5, 20h);
    {
        const Variable zone("TZ", "Pacific/Auckland");
        EXPECT_EQ(calendar.dayOf(moment), 2026y / 1 / 6);
    }
    const Variable zone("TZ", "America/Los_Angeles");
    EXPECT_EQ(calendar.dayOf(moment), 2026y / 1 / 5);
}

TEST(PosixCalendarTest, KnowsDaysThatHave23Or25Hours)
{
    const Variable zone("TZ", "Europe/Berlin");
    const PosixCalendar calendar;
    EXPECT_EQ(calendar.dayOf(utc(2026y / 3 / 28, 23h)), 2026y / 3 / 29); // winter time still
    EXPECT_EQ(calendar.dayOf(utc(2026y / 3 / 29, 21h)), 2026y / 3 / 29);
    EXPECT_EQ(calendar.dayOf(utc(2026y / 3 / 29, 22h)), 2026y / 3 / 30); // summer time
    EXPECT_EQ(calendar.dayOf(utc(2026y / 10 / 25, 22h)), 2026y / 10 / 25);
    EXPECT_EQ(calendar.dayOf(utc(2026y / 10 / 25, 23h)), 2026y / 10 / 26);
}

TEST(PosixCalendarTest, WritesAMonthAndADayInEnglishWhereNothingElseIsSaid)
{
    const Variable language("LC_ALL", "C");
    EXPECT_EQ(PosixCalendar().monthAndDay(2024y / 3 / 4), "Mar 4");
    EXPECT_EQ(PosixCalendar().monthAndDay(2024y / 12 / 31), "Dec 31");
}

TEST(PosixCalendarTest, FallsBackToEnglishForALanguageThatIsNotInstalled)
{
    const Variable language("LC_ALL", "xx_XX.UTF-8");
    EXPECT_EQ(PosixCalendar().monthAndDay(2024y / 3 / 4), "Mar 4");
}

} // namespace
} // namespace tallowbay::posix

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, CalendarContract, posix::PosixCalendarBackend);
} // namespace tallowbay::contract
