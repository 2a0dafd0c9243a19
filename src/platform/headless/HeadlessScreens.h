#pragma once

#include "platform/Screens.h"

namespace tallowbay::headless {

class HeadlessScreens final : public Screens {
public:
    std::optional<Rect> mainFrame() const override
    {
        return mainSize ? std::optional(Rect{{0, 0}, *mainSize}) : std::nullopt;
    }

    std::optional<Size> mainSize = Size{1920, 1080}; // empty while no screen is connected
};

} // namespace tallowbay::headless
