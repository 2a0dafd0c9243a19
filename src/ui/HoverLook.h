#pragma once

#include "base/Geometry.h"

#include <optional>

namespace tallowbay {

// How a control lights up under the mouse while its window has the keyboard. Over all of it, the
// pointer is a pointing hand.
struct HoverLook {
    double cornerRadius = 6;
    double hoverAlpha = 0.12; // of the white behind it

    // Empty: nothing behind it.
    std::optional<Color> background(bool hovered) const
    {
        return hovered ? std::optional(Color::white(1, hoverAlpha)) : std::nullopt;
    }
    bool operator==(const HoverLook&) const = default;
};

inline constexpr HoverLook hoverButtonLook{6, 0.12};
inline constexpr HoverLook hoverViewLook{8, 0.1};

// How a button of the first-run window looks.
struct ButtonLook {
    double cornerRadius = 0;
    double borderWidth = 0;
    std::optional<Color> border;
    std::optional<Color> background;
    Color tint;
    bool operator==(const ButtonLook&) const = default;
};

// A button of the first-run window under the mouse. Whether its window has the keyboard does not
// matter.
class OnboardingHoverButton {
public:
    enum class Style { bordered, plain };

    explicit OnboardingHoverButton(Style style)
        : style(style)
    {
        applyNormal();
    }

    const ButtonLook& look() const { return current; }
    bool isEnabled() const { return enabled; }

    // Enabled: the normal look, also under the mouse until it enters again.
    void setEnabled(bool);
    void mouseEntered();
    void mouseExited();

private:
    void applyNormal();
    void applyHover();
    void applyDisabled();

    Style style;
    bool enabled = true;
    ButtonLook current;
};

} // namespace tallowbay
