#pragma once

#include <string_view>

namespace tallowbay {

// The plain lines that tell what the program does: no time stamp, no level.
//
// Thread: any. A line is written whole and at once, also when the output is a pipe or a file:
// nobody who reads it has to wait for the next one, and no line breaks into another. A line that
// cannot be written is lost without further effect.
class Console {
public:
    virtual ~Console() = default;

    // The text comes without its line feed, and is written as it stands: a line feed in a file's
    // name breaks the line.
    virtual void line(std::string_view text) = 0;
};

} // namespace tallowbay
