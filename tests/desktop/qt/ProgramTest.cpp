#include "desktop/support/SessionBus.h"
#include "desktop/support/Wait.h"
#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;

namespace tallowbay::test {
namespace {

// The built program, in an empty home and a session of its own.
class ProgramTest : public testing::Test {
protected:
    Environment environment() const
    {
        Environment result{
            {"DISPLAY", std::nullopt},
            {"WAYLAND_DISPLAY", std::nullopt},
            {"XDG_SESSION_TYPE", std::nullopt},
            {"DBUS_SESSION_BUS_ADDRESS", std::nullopt},
            {"HOME", folder.path.native()},
            {"XDG_CONFIG_HOME", (folder.path / "config").native()},
            {"XDG_RUNTIME_DIR", (folder.path).native()},
        };
        return result;
    }

    Environment environmentOn(const XServer& server) const
    {
        Environment result = environment();
        result["DISPLAY"] = server.display();
        return result;
    }

    std::unique_ptr<ChildProcess> start(
        const std::vector<std::string>& arguments, const Environment& environment) const
    {
        std::vector<std::string> command{TALLOWBAY_PROGRAM};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return std::make_unique<ChildProcess>(command, environment);
    }

    // Catching the signals is among the last things that the program does before its main loop.
    static bool runs(const ChildProcess& program)
    {
        return waitUntil([&] { return (caughtSignals(program.pid()) >> (SIGTERM - 1)) & 1; });
    }

    static std::uint64_t caughtSignals(pid_t process)
    {
        std::ifstream status("/proc/" + std::to_string(process) + "/status");
        for (std::string word; status >> word;)
            if (std::string mask; word == "SigCgt:" && status >> mask)
                return std::stoull(mask, nullptr, 16);
        return 0;
    }

    static bool setupIsShown(const XServer& server)
    {
        return server.search({"--name", "^Tallowbay$"}).status == 0;
    }

    static std::string activeWindow(const XServer& server)
    {
        return server.run({"xdotool", "getactivewindow", "getwindowname"}).output;
    }

    test::TemporaryFolder folder;
};

TEST_F(ProgramTest, HelpsWithoutADisplay)
{
    const auto program = start({"--help"}, environment());
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(program->output(), HasSubstr("Usage: tallowbay"));
    EXPECT_THAT(program->errors(), IsEmpty());
}

TEST_F(ProgramTest, TellsItsVersionWithoutADisplay)
{
    const auto program = start({"--version"}, environment());
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(program->output(), testing::StartsWith("Tallowbay "));
    EXPECT_THAT(program->errors(), IsEmpty());
}

TEST_F(ProgramTest, RefusesAnUnknownOptionWithoutADisplay)
{
    const auto program = start({"--nonsense"}, environment());
    EXPECT_EQ(program->wait(), 2);
    EXPECT_THAT(program->output(), IsEmpty());
    EXPECT_EQ(program->errors(), "tallowbay: unknown option '--nonsense' (try --help)\n");
}

TEST_F(ProgramTest, SaysThatTheDisplayIsMissing)
{
    const auto program = start({}, environment());
    EXPECT_EQ(program->wait(), 1);
    EXPECT_THAT(program->output(), IsEmpty());
    EXPECT_THAT(program->errors(), HasSubstr("DISPLAY is not set"));
}

TEST_F(ProgramTest, SaysWhichDisplayDoesNotAnswer)
{
    auto nowhere = environment();
    nowhere["DISPLAY"] = ":54321";
    const auto program = start({}, nowhere);
    EXPECT_EQ(program->wait(), 1);
    EXPECT_THAT(program->output(), IsEmpty());
    EXPECT_THAT(program->errors(), HasSubstr(":54321"));
}

TEST_F(ProgramTest, SaysThatAWaylandSessionNeedsAnXServer)
{
    auto wayland = environment();
    wayland["WAYLAND_DISPLAY"] = "wayland-0";
    const auto program = start({}, wayland);
    EXPECT_EQ(program->wait(), 1);
    EXPECT_THAT(program->errors(), HasSubstr("Xwayland"));
}

TEST_F(ProgramTest, SaysWhatAWaylandSessionKeepsFromIt)
{
    const XServer server;
    auto wayland = environmentOn(server);
    wayland["WAYLAND_DISPLAY"] = "wayland-0";
    const auto program = start({}, wayland);
    ASSERT_TRUE(runs(*program));
    EXPECT_THAT(program->errors(), HasSubstr("Wayland session: pastes are not seen"));
}

TEST_F(ProgramTest, EndsInGoodOrderOnSignals)
{
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const XServer server;
        const auto program = start({}, environmentOn(server));
        ASSERT_TRUE(runs(*program));
        program->signal(signal);
        EXPECT_EQ(program->wait(), 0) << signal;
        EXPECT_THAT(program->output(), IsEmpty());
    }
}

// Started with nohup, the program died with its terminal all the same.
TEST_F(ProgramTest, OutlivesTheHangUpThatItWasToldToIgnore)
{
    const XServer server;
    ChildProcess program(
        {"sh", "-c", "trap '' HUP; exec \"$0\"", TALLOWBAY_PROGRAM}, environmentOn(server));
    ASSERT_TRUE(runs(program));
    program.signal(SIGHUP);

    const auto second = start({}, environmentOn(server));
    EXPECT_EQ(second->wait(), 0);
    EXPECT_THAT(second->errors(), HasSubstr("already running")) << "it ended";
    EXPECT_FALSE((caughtSignals(program.pid()) >> (SIGHUP - 1)) & 1);

    program.signal(SIGTERM);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_THAT(program.output(), IsEmpty());
}

TEST_F(ProgramTest, EndsQuietlyWhenTheXServerDies)
{
    XServer server;
    const auto program = start({}, environmentOn(server));
    ASSERT_TRUE(runs(*program));
    server.kill();
    EXPECT_EQ(program->wait(), 1);
}

TEST_F(ProgramTest, ShowsWhatItNeedsAtTheFirstStartOnly)
{
    std::filesystem::create_directory(folder.path / "Desktop");
    XServer server;
    server.startWindowManager();
    const auto windowIsShown = [&] { return setupIsShown(server); };
    auto program = start({}, environmentOn(server));
    ASSERT_TRUE(waitUntil(windowIsShown));
    const auto preferences = folder.path / "config/tallowbay/com.quarnel.tallowbay.json";

    EXPECT_TRUE(waitUntil([&] {
        server.run({"xdotool", "key", "Return"});
        return std::filesystem::exists(preferences);
    }));
    EXPECT_TRUE(waitUntil([&] { return !windowIsShown(); }));

    // It is at work now, without another start.
    ASSERT_TRUE(waitUntil([&] { return program->output().find('\n') != std::string::npos; }));
    const auto screenshot = folder.path / "Desktop" / "Screenshot 1.png";
    server.run({"convert", "-size", "64x64", "gradient:", screenshot});
    EXPECT_TRUE(waitUntil([&] {
        return program->output().find("Clipboard updated: 1 image(s)\n") != std::string::npos;
    })) << program->output();
    program->end();

    program = start({}, environmentOn(server));
    ASSERT_TRUE(runs(*program));
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_FALSE(windowIsShown());
}

// It went on where nobody saw it, and took no screenshots.
TEST_F(ProgramTest, EndsWhenItsFirstWindowIsClosed)
{
    XServer server;
    server.startWindowManager();
    const auto program = start({}, environmentOn(server));
    ASSERT_TRUE(waitUntil([&] { return activeWindow(server) == "Tallowbay\n"; }));
    server.run({"xdotool", "key", "alt+F4"});
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(program->errors(), IsEmpty());
}

TEST_F(ProgramTest, BringsItsFirstWindowToTheFrontWhenItIsStartedAgain)
{
    XServer server;
    server.startWindowManager();
    const SessionBus bus(environment());
    auto withBus = environmentOn(server);
    withBus["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
    const auto program = start({}, withBus);
    ASSERT_TRUE(waitUntil([&] { return activeWindow(server) == "Tallowbay\n"; }));
    XClient other(server.display());
    other.takeFocus();
    ASSERT_NE(activeWindow(server), "Tallowbay\n");

    const auto second = start({}, withBus);
    EXPECT_EQ(second->wait(), 0);
    EXPECT_TRUE(waitUntil([&] { return activeWindow(server) == "Tallowbay\n"; }));
    EXPECT_TRUE(program->running());
}

TEST_F(ProgramTest, RunsOncePerSessionWithoutAMessageBus)
{
    const XServer server;
    const auto first = start({}, environmentOn(server));
    ASSERT_TRUE(runs(*first));

    const auto second = start({}, environmentOn(server));

    EXPECT_EQ(second->wait(), 0);
    EXPECT_THAT(second->errors(), HasSubstr("already running"));
    EXPECT_THAT(second->output(), IsEmpty());
    EXPECT_TRUE(first->running());
}

TEST_F(ProgramTest, RunsOncePerSessionWithAMessageBus)
{
    const XServer server;
    const ChildProcess bus(
        {"dbus-daemon", "--session", "--nofork", "--print-address=1"}, environment());
    ASSERT_TRUE(waitUntil([&] { return bus.output().find('\n') != std::string::npos; }));
    auto withBus = environmentOn(server);
    withBus["DBUS_SESSION_BUS_ADDRESS"] = bus.output().substr(0, bus.output().find('\n'));
    const auto first = start({}, withBus);
    ASSERT_TRUE(runs(*first));

    // Without a lock in common, only the bus can tell.
    withBus["XDG_RUNTIME_DIR"] = (folder.path / "other").native();
    const auto second = start({}, withBus);

    EXPECT_EQ(second->wait(), 0);
    EXPECT_THAT(second->errors(), HasSubstr("already running"));
    EXPECT_TRUE(first->running());
}

TEST_F(ProgramTest, ShowsItsIconInATrayOnTheMessageBusThatStartsLaterAndAnew)
{
    const XServer server;
    const ChildProcess bus(
        {"dbus-daemon", "--session", "--nofork", "--print-address=1"}, environment());
    ASSERT_TRUE(waitUntil([&] { return bus.output().find('\n') != std::string::npos; }));
    auto withBus = environmentOn(server);
    withBus["DBUS_SESSION_BUS_ADDRESS"] = bus.output().substr(0, bus.output().find('\n'));
    const auto program = start({}, withBus);
    ASSERT_TRUE(runs(*program));

    for (int run = 0; run < 2; ++run) {
        const ChildProcess host({TALLOWBAY_NOTIFIER_HOST}, withBus);
        EXPECT_TRUE(waitUntil([&] { return host.output().starts_with("icon "); })) << run;
    }
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
}

// What a tray on the message bus is told of the icon.
class TrayIconTest : public ProgramTest {
protected:
    std::string told(const std::string& desktop)
    {
        const XServer server;
        const SessionBus bus;
        auto withBus = environmentOn(server);
        withBus["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
        withBus["XDG_CURRENT_DESKTOP"] = desktop;
        const ChildProcess host({TALLOWBAY_NOTIFIER_HOST}, withBus);
        const auto program = start({}, withBus);
        waitUntil([&] { return host.output().find("on white") != std::string::npos; });
        program->signal(SIGTERM);
        EXPECT_EQ(program->wait(), 0);
        return host.output();
    }

    static int number(const std::string& text, const std::string& after)
    {
        const auto at = text.find(after);
        return at == std::string::npos ? 0 : std::stoi(text.substr(at + after.size()));
    }
};

// The icon was black on black where the panel is dark and the windows are light.
TEST_F(TrayIconTest, ShowsOnAnyGround)
{
    const std::string look = told("sway");
    EXPECT_THAT(look, HasSubstr("name \"\""));
    EXPECT_GT(number(look, "on black "), 80) << look;
    EXPECT_GT(number(look, "on white "), 40) << look;
}

TEST_F(TrayIconTest, GoesByNameWhereThePanelColorsSymbolsItself)
{
    const std::string look = told("XFCE");
    EXPECT_THAT(look, HasSubstr("name \"com.quarnel.tallowbay-symbolic\""));
    EXPECT_GT(number(look, "on black "), 80) << look; // for where the name is not known
}

} // namespace
} // namespace tallowbay::test
