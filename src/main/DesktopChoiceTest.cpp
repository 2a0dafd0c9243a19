#include "main/DesktopChoice.h"

#include <gmock/gmock.h>

namespace tallowbay {
namespace {

using ::testing::HasSubstr;
using ::testing::VariantWith;

TEST(DesktopChoiceTest, TakesTheXServerOfTheSession)
{
    SessionEnvironment session;
    session.display = ":0";
    EXPECT_THAT(chooseDesktop(session), VariantWith<DesktopKind>(DesktopKind::x11));
}

TEST(DesktopChoiceTest, TakesTheXServerOfAWaylandSession)
{
    SessionEnvironment session;
    session.display = ":0";
    session.waylandDisplay = "wayland-0";
    EXPECT_THAT(chooseDesktop(session), VariantWith<DesktopKind>(DesktopKind::x11));
}

TEST(DesktopChoiceTest, LetsTheUserForceTheX11Desktop)
{
    SessionEnvironment session;
    session.forced = "x11";
    session.display = ":0";
    EXPECT_THAT(chooseDesktop(session), VariantWith<DesktopKind>(DesktopKind::x11));
}

TEST(DesktopChoiceTest, SaysThatAForcedDesktopIsUnknown)
{
    SessionEnvironment session;
    session.forced = "X12";
    session.display = ":0";
    EXPECT_THAT(
        chooseDesktop(session),
        VariantWith<std::string>("TALLOWBAY_DESKTOP is \"X12\", but can only be \"x11\""));
}

TEST(DesktopChoiceTest, SaysWhatIsMissingWithoutADisplay)
{
    EXPECT_THAT(
        chooseDesktop(SessionEnvironment()), VariantWith<std::string>(HasSubstr("DISPLAY")));

    SessionEnvironment wayland;
    wayland.waylandDisplay = "wayland-0";
    EXPECT_THAT(chooseDesktop(wayland), VariantWith<std::string>(HasSubstr("Xwayland")));
}

TEST(DesktopChoiceTest, ForcingX11DoesNotMakeADisplay)
{
    SessionEnvironment session;
    session.forced = "x11";
    EXPECT_THAT(chooseDesktop(session), VariantWith<std::string>(HasSubstr("DISPLAY")));
}

} // namespace
} // namespace tallowbay
