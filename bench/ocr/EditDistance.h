#pragma once

#include <string>

namespace tallowbay::bench {

// How recognised text is compared: runs of blanks and tabs count as one blank, blanks at the ends
// of a line and empty lines not at all. Nothing else is forgiven: case, quotes and dashes count.
std::u32string normalised(const std::string& utf8);

// The fewest characters to insert, remove or replace to turn one text into the other.
int editDistance(const std::u32string&, const std::u32string&);

} // namespace tallowbay::bench
