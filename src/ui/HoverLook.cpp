#include "ui/HoverLook.h"

namespace tallowbay {

void OnboardingHoverButton::setEnabled(bool wanted)
{
    enabled = wanted;
    if (enabled)
        applyNormal();
    else
        applyDisabled();
}

void OnboardingHoverButton::mouseEntered()
{
    if (enabled)
        applyHover();
}

void OnboardingHoverButton::mouseExited()
{
    if (enabled)
        applyNormal();
}

void OnboardingHoverButton::applyNormal()
{
    if (style == Style::bordered)
        current = {6, 1, Color::white(1, 0.25), std::nullopt, Color::white(1, 0.75)};
    else
        current = {0, 0, std::nullopt, std::nullopt, Color::white(1, 0.5)};
}

void OnboardingHoverButton::applyHover()
{
    if (style == Style::bordered) {
        current.border = Color::white(1, 0.6);
        current.background = Color::white(1, 0.08);
    } else {
        current.background = Color::white(1, 0.06);
    }
    current.tint = Color::white(1);
}

void OnboardingHoverButton::applyDisabled()
{
    current.border = Color::white(1, 0.2);
    current.background = std::nullopt;
    current.tint = Color::white(1, 0.38);
}

} // namespace tallowbay
