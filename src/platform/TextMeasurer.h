#pragma once

#include "base/Geometry.h"

#include <string>

namespace tallowbay {

// How much room a text takes, in points, in the one font that windows show and that is drawn.
//
// The box is as wide as the longest line, blanks at its end included, and has one line's height for
// every line: a line feed begins another line, an empty text is one line without width. The height
// does not depend on what stands in the line. The box grows with the size of the font: n times the
// font has n times the box, for any n. UTF-8.
//
// Thread: main queue.
class TextMeasurer {
public:
    virtual ~TextMeasurer() = default;
    virtual Size measure(const std::string& text, const Font&) const = 0;
};

} // namespace tallowbay
