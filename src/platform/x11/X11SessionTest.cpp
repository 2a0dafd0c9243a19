#include "platform/x11/X11TestDesktop.h"

#include <gtest/gtest.h>

namespace tallowbay::x11 {

TEST(X11SessionTest, TellsThatThereIsNoServer)
{
    test::LoopDispatch dispatch;
    const auto created = X11Session::create(
        dispatch, [] {}, ":987");
    EXPECT_EQ(created.session, nullptr);
    EXPECT_EQ(created.problem, "There is no X server to connect to");
}

TEST(X11SessionTest, TellsThatAnExtensionIsMissing)
{
    const test::XServer server({640, 480, {"-extension", "XFIXES"}});
    test::LoopDispatch dispatch;
    const auto created = X11Session::create(
        dispatch, [] {}, server.display());
    EXPECT_EQ(created.session, nullptr);
    EXPECT_EQ(created.problem, "The X server lacks the XFIXES extension");
}

} // namespace tallowbay::x11
