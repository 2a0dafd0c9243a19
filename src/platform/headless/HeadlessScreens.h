#pragma once

#include "platform/Screens.h"

namespace tallowbay::headless {

class HeadlessScreens final : public Screens {
public:
    std::optional<Rect> mainFrame() const override
    {
        return mainSize ? std::optional(Rect{{0, 0}, *mainSize}) : std::nullopt;
    }
    std::vector<Rect> frames() const override
    {
        std::vector<Rect> all = others;
        if (const auto main = mainFrame())
            all.push_back(*main);
        return all;
    }
    std::optional<Point> pointer() const override { return mouse; }

    std::optional<Size> mainSize = Size{1920, 1080}; // empty while no screen is connected
    std::vector<Rect> others; // beside the main one
    std::optional<Point> mouse;
};

} // namespace tallowbay::headless
