#pragma once

#include "platform/Calendar.h"

#include <locale.h>

namespace tallowbay::posix {

// The C library's time zones, and the names of the months in the language of the environment
// (LC_TIME), whatever the process's own locale is.
class PosixCalendar final : public Calendar {
public:
    PosixCalendar();
    PosixCalendar(const PosixCalendar&) = delete;
    PosixCalendar& operator=(const PosixCalendar&) = delete;
    ~PosixCalendar() override;

    std::chrono::year_month_day dayOf(WallTime) const override;
    std::string monthAndDay(std::chrono::year_month_day) const override;

private:
    const ::locale_t language; // of the environment, or C where that is not installed
};

} // namespace tallowbay::posix
