#pragma once

#include "base/Geometry.h"

#include <string>

namespace tallowbay {

// How wide and high a text comes out, in points. Thread: main queue.
class TextMeasurer {
public:
    virtual ~TextMeasurer() = default;
    virtual Size measure(const std::string& text, const Font&) const = 0;
};

} // namespace tallowbay
