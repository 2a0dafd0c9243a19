#include "desktop/support/XServer.h"
#include "desktop/support/Wait.h"

#include <gmock/gmock.h>

using namespace tallowbay::test;
using testing::HasSubstr;

TEST(XServerTest, ServesClientsOnADisplayOfItsOwn)
{
    const XServer first;
    const XServer second;

    EXPECT_NE(first.display(), second.display());
    EXPECT_EQ(first.run({"xdotool", "getdisplaygeometry"}).output, "1280 800\n");
}

TEST(XServerTest, HasAWindowManagerOnRequest)
{
    XServer server({640, 480, {}});
    server.startWindowManager();

    EXPECT_THAT(server.run({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}).output, HasSubstr("0x"));
}

TEST(XServerTest, ShowsANestedServerInAWindow)
{
    XServer outer;
    const auto inner = XServer::nestedIn(outer, {640, 480, {}});

    EXPECT_EQ(inner->run({"xdotool", "getdisplaygeometry"}).output, "640 480\n");
    EXPECT_EQ(outer.run({"xdotool", "search", "--name", "Xephyr"}).status, 0);
}

TEST(XServerTest, ChangesTheKeyboardLayout)
{
    const XServer server;
    server.setKeyboard({"-layout", "us,ru"});

    EXPECT_THAT(server.run({"setxkbmap", "-query"}).output, HasSubstr("us,ru"));
}

TEST(XServerTest, TellsAServerThatCannotStart)
{
    EXPECT_THROW(XServer({640, 480, {"-no-such-option"}}), std::runtime_error);
}

TEST(ChildProcessTest, FeedsAndReadsAProgram)
{
    ChildProcess child({"cat"}, {}, "text");

    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(child.output(), "text");
}

TEST(ChildProcessTest, EndsAProgramThatGoesOn)
{
    ChildProcess child({"sleep", "1000"}, {});
    EXPECT_TRUE(child.running());
    child.end();
    EXPECT_EQ(child.wait(), 128 + 15);
}

TEST(ChildProcessTest, RemovesAVariable)
{
    ChildProcess child(
        {"sh", "-c", "echo ${HOME-none}${ADDED}"}, {{"HOME", std::nullopt}, {"ADDED", "added"}});

    EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(child.output(), "noneadded\n");
}
