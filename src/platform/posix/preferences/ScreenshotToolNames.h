#pragma once

#include <string>
#include <vector>

namespace tallowbay::posix {

// How the screenshot tools of Linux desktops name their files by default, in all their languages.
// Regular expressions (ECMAScript) for a whole name without its extension: a name counts only if it
// has all of the tool's own spelling, since people name photos and exports by days and hours, too.
std::vector<std::string> screenshotToolNames();

// How these names hold the time: regular expressions with five groups, which are year, month, day,
// hour and minute.
std::vector<std::string> screenshotToolDates();

} // namespace tallowbay::posix
