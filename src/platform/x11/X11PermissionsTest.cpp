#include "platform/x11/X11Permissions.h"

#include "platform/contract/PermissionsContract.h"
#include "platform/x11/X11TestDesktop.h"

#include <gtest/gtest.h>

#include <optional>

namespace tallowbay::x11 {

namespace {

struct X11PermissionsBackend {
    std::optional<X11TestDesktop> desktop;
    std::optional<X11Permissions> made;

    const Permissions& permissionsIn(contract::SessionKind kind)
    {
        test::XServer::Options options{640, 480, {}};
        if (kind == contract::SessionKind::screenOnly)
            options.extraArguments = {"-extension", "XTEST"};
        desktop.emplace(std::make_unique<test::XServer>(options));
        const bool wayland = kind == contract::SessionKind::nothing;
        return made.emplace(*desktop->session, wayland);
    }
};

TEST(X11PermissionsTest, GrantsEverythingOnAnXServer)
{
    X11TestDesktop desktop;
    const X11Permissions permissions(*desktop.session, false);
    EXPECT_TRUE(permissions.accessibility().granted());
    EXPECT_TRUE(permissions.screenRecording().granted());
    EXPECT_EQ(permissions.accessibility().reason, "");
}

TEST(X11PermissionsTest, GrantsNothingInAWaylandSession)
{
    X11TestDesktop desktop;
    const X11Permissions permissions(*desktop.session, true);
    EXPECT_EQ(permissions.accessibility().state, Permission::State::unavailable);
    EXPECT_EQ(permissions.screenRecording().state, Permission::State::unavailable);
    EXPECT_NE(permissions.accessibility().reason, "");
    EXPECT_NE(permissions.screenRecording().reason, "");
}

TEST(X11PermissionsTest, TellsThatKeysCannotBeTyped)
{
    X11TestDesktop desktop(
        std::make_unique<test::XServer>(test::XServer::Options{640, 480, {"-extension", "XTEST"}}));
    const X11Permissions permissions(*desktop.session, false);
    EXPECT_EQ(permissions.accessibility().state, Permission::State::unavailable);
    EXPECT_EQ(permissions.accessibility().reason, "The X server lacks the XTEST extension");
    EXPECT_TRUE(permissions.screenRecording().granted());
}

} // namespace

} // namespace tallowbay::x11

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, PermissionsContract, x11::X11PermissionsBackend);
} // namespace tallowbay::contract
