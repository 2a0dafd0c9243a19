#pragma once

#include "platform/TextMeasurer.h"

#include <algorithm>
#include <string>

namespace tallowbay::headless {

// Every byte of a text is half as wide as the font is high.
class HeadlessTextMeasurer final : public TextMeasurer {
public:
    Size measure(const std::string& text, const Font& font) const override
    {
        std::size_t lines = 0;
        std::size_t longest = 0;
        for (std::size_t begin = 0; begin <= text.size(); ++lines) {
            const std::size_t end = std::min(text.find('\n', begin), text.size());
            longest = std::max(longest, end - begin);
            begin = end + 1;
        }
        return {
            font.sizePoints / 2 * static_cast<double>(longest),
            font.sizePoints * 1.25 * static_cast<double>(lines)};
    }
};

} // namespace tallowbay::headless
