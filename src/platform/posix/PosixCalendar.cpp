#include "platform/posix/PosixCalendar.h"

#include <algorithm>
#include <ctime>
#include <langinfo.h>

namespace tallowbay::posix {

namespace {

using namespace std::chrono;

::locale_t localeOfEnvironment()
{
    const ::locale_t named = ::newlocale(LC_TIME_MASK | LC_CTYPE_MASK, "", nullptr);
    return named ? named : ::newlocale(LC_TIME_MASK, "C", nullptr);
}

// Abbreviated months with and without the day's number in front of them are one form in some
// languages and two in others; beside a number belongs the form of ABMON.
std::string monthName(month wanted, ::locale_t language)
{
    const std::string name =
        ::nl_langinfo_l(ABMON_1 + static_cast<nl_item>(unsigned(wanted) - 1), language);
    return name.substr(std::min(name.find_first_not_of(' '), name.size())); // some are padded
}

// Whether the language's own short date puts the month first.
bool monthComesFirst(::locale_t language)
{
    const std::string format = ::nl_langinfo_l(D_FMT, language);
    const auto month = format.find_first_of("mbBD");
    const auto day = format.find_first_of("de");
    return month != std::string::npos && (day == std::string::npos || month < day);
}

} // namespace

PosixCalendar::PosixCalendar()
    : language(localeOfEnvironment())
{
}

PosixCalendar::~PosixCalendar()
{
    ::freelocale(language);
}

year_month_day PosixCalendar::dayOf(WallTime moment) const
{
    ::tzset(); // the user may have travelled
    const std::time_t seconds = system_clock::to_time_t(floor<std::chrono::seconds>(moment));
    std::tm local{};
    if (!::localtime_r(&seconds, &local))
        return floor<days>(moment);
    return {
        year(local.tm_year + 1900), month(static_cast<unsigned>(local.tm_mon + 1)),
        day(static_cast<unsigned>(local.tm_mday))};
}

std::string PosixCalendar::monthAndDay(year_month_day date) const
{
    const std::string name = monthName(date.month(), language);
    const std::string number = std::to_string(unsigned(date.day()));
    return monthComesFirst(language) ? name + " " + number : number + " " + name;
}

} // namespace tallowbay::posix
