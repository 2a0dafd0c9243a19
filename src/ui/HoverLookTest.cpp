#include "ui/HoverLook.h"

#include "ui/GradientRim.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using Style = OnboardingHoverButton::Style;

TEST(HoverLookTest, LightsUpUnderTheMouse)
{
    EXPECT_EQ(hoverButtonLook.background(true), Color::white(1, 0.12));
    EXPECT_EQ(hoverButtonLook.background(false), std::nullopt);
    EXPECT_EQ(hoverButtonLook.cornerRadius, 6);
    EXPECT_EQ(hoverViewLook.background(true), Color::white(1, 0.1));
    EXPECT_EQ(hoverViewLook.cornerRadius, 8);
}

TEST(OnboardingHoverButtonTest, HasABorderInTheBorderedStyleAlone)
{
    const ButtonLook bordered{6, 1, Color::white(1, 0.25), std::nullopt, Color::white(1, 0.75)};
    const ButtonLook plain{0, 0, std::nullopt, std::nullopt, Color::white(1, 0.5)};
    EXPECT_EQ(OnboardingHoverButton(Style::bordered).look(), bordered);
    EXPECT_EQ(OnboardingHoverButton(Style::plain).look(), plain);
}

TEST(OnboardingHoverButtonTest, LightsUpUnderTheMouse)
{
    for (const Style style : {Style::bordered, Style::plain}) {
        OnboardingHoverButton button(style);
        const ButtonLook normal = button.look();
        button.mouseEntered();
        EXPECT_EQ(button.look().tint, Color::white(1));
        const bool bordered = style == Style::bordered;
        EXPECT_EQ(button.look().background, Color::white(1, bordered ? 0.08 : 0.06));
        EXPECT_EQ(
            button.look().border, bordered ? std::optional(Color::white(1, 0.6)) : std::nullopt);
        button.mouseExited();
        EXPECT_EQ(button.look(), normal);
    }
}

TEST(OnboardingHoverButtonTest, StaysDimUnderTheMouseWhileItIsDisabled)
{
    for (const Style style : {Style::bordered, Style::plain}) {
        OnboardingHoverButton button(style);
        const ButtonLook normal = button.look();
        button.setEnabled(false);
        EXPECT_FALSE(button.isEnabled());
        const ButtonLook disabled = button.look();
        EXPECT_EQ(disabled.border, Color::white(1, 0.2));
        EXPECT_EQ(disabled.background, std::nullopt);
        EXPECT_EQ(disabled.tint, Color::white(1, 0.38));
        button.mouseEntered();
        EXPECT_EQ(button.look(), disabled);
        button.mouseExited();
        EXPECT_EQ(button.look(), disabled);
        button.setEnabled(true);
        EXPECT_EQ(button.look(), normal);
    }
}

TEST(OnboardingHoverButtonTest, IsDimmedUnderTheMouse)
{
    OnboardingHoverButton button(Style::bordered);
    button.mouseEntered();
    button.setEnabled(false);
    EXPECT_EQ(button.look().tint, Color::white(1, 0.38));
    EXPECT_EQ(button.look().background, std::nullopt);
}

TEST(GradientRimTest, RunsHalfAPointInsideOfTheCard)
{
    const RoundedRect rim = GradientRim::path({100, 40}, 28);
    EXPECT_EQ(rim, (RoundedRect{{{0.5, 0.5}, {99, 39}}, 28}));
}

TEST(GradientRimTest, FadesFromTheUpperLeftCorner)
{
    EXPECT_EQ(GradientRim::start, (Point{0, 1}));
    EXPECT_EQ(GradientRim::end, (Point{1, 0}));
    EXPECT_EQ(GradientRim::colors[0], Color::white(1, 0.55));
    EXPECT_EQ(GradientRim::colors[1], Color::white(1, 0.12));
    EXPECT_EQ(GradientRim::colors[2], Color::white(1, 0.04));
}

} // namespace
} // namespace tallowbay
