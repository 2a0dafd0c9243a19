#include "platform/posix/PosixProcesses.h"

#include "platform/contract/ProcessesContract.h"
#include "platform/posix/FileDescriptor.h"
#include "support/TemporaryFolder.h"

#include <atomic>
#include <csignal>
#include <fstream>
#include <optional>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

std::string contents(const fs::path& path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

struct PosixProcessesBackend {
    test::TemporaryFolder temporary;
    PosixProcesses real;

    Processes& processes() { return real; }
    fs::path script(const std::string& name, const std::string& text)
    {
        const auto path = temporary.path / name;
        std::ofstream(path) << "#!/bin/sh\n" << text;
        fs::permissions(path, fs::perms(0755));
        return path;
    }
    fs::path notes() { return temporary.path / "notes"; }

    fs::path programThatExits(int status)
    {
        const auto text = std::to_string(status);
        return script("exit" + text, "exit " + text + "\n");
    }
    fs::path programThatNotesItsArguments()
    {
        return script("note", "printf '%s\\0' \"$@\" > '" + notes().native() + "'\n");
    }
    std::vector<std::string> notedArguments()
    {
        std::vector<std::string> arguments;
        std::istringstream all(contents(notes()));
        for (std::string argument; std::getline(all, argument, '\0');)
            arguments.push_back(argument);
        return arguments;
    }
};

class PosixProcessesTest : public testing::Test {
protected:
    // Whoever runs the tests may have set some to be ignored.
    PosixProcessesTest()
    {
        for (const int signal : {SIGHUP, SIGINT, SIGQUIT})
            std::signal(signal, SIG_DFL);
    }

    // What the script's own commands print, as they see their surroundings.
    std::string noted(const std::string& commands)
    {
        const auto target = backend.notes().native();
        EXPECT_TRUE(backend.real.run("/bin/sh", {"-c", "{ " + commands + "; } > " + target}));
        return contents(backend.notes());
    }

    PosixProcessesBackend backend;
};

TEST_F(PosixProcessesTest, FailsWithAFileThatIsNoProgram)
{
    const auto path = backend.temporary.path / "text";
    std::ofstream(path) << "just text";
    EXPECT_FALSE(backend.real.run(path, {}));
    EXPECT_FALSE(backend.real.run(backend.temporary.path, {}));
    EXPECT_FALSE(backend.real.run("", {}));
    fs::permissions(path, fs::perms(0755));
    EXPECT_FALSE(backend.real.run(path, {})) << "no format that the system can start";
}

TEST_F(PosixProcessesTest, FailsWhenASignalEndsTheProgram)
{
    EXPECT_FALSE(backend.real.run("/bin/sh", {"-c", "kill -9 $$"}));
    EXPECT_FALSE(backend.real.run("/bin/sh", {"-c", "kill -TERM $$"}));
}

TEST_F(PosixProcessesTest, ConnectsTheProgramToTheNullDevice)
{
    EXPECT_EQ(noted("readlink /proc/$$/fd/0; readlink /proc/$$/fd/2"), "/dev/null\n/dev/null\n");
    // Standard output was redirected above: without that, too, it goes nowhere.
    EXPECT_TRUE(backend.real.run("/bin/sh", {"-c", "test $(readlink /proc/$$/fd/1) = /dev/null"}));
    EXPECT_TRUE(backend.real.run("/bin/sh", {"-c", "! read line"})) << "the input is not empty";
}

TEST_F(PosixProcessesTest, LeaksNoDescriptor)
{
    const FileDescriptor low(::open("/dev/zero", O_RDONLY));
    const FileDescriptor high(::fcntl(low.get(), F_DUPFD, 200));
    ASSERT_GE(high.get(), 200);
    const auto open = noted("readlink /proc/$$/fd/* || true");
    EXPECT_NE(open.find("/dev/null"), open.npos);
    EXPECT_EQ(open.find("/dev/zero"), open.npos) << open;
}

TEST_F(PosixProcessesTest, StartsTheProgramWithNoSignalBlockedOrIgnored)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigset_t maskBefore;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &maskBefore);
    const auto status = noted("sed -n 's/Sig\\(Blk\\|Ign\\):\\t0*/\\1 /p' /proc/self/status");
    ::pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
    std::signal(SIGPIPE, before);
    // The C library keeps two signals for itself, and ignores them in a child.
    EXPECT_EQ(status, "Blk \nIgn 180000000\n");
}

// The tool that was at work when a terminal closed died, although nohup had started the program.
TEST_F(PosixProcessesTest, LetsTheProgramOutliveATerminalThatWeOutlive)
{
    const auto before = std::signal(SIGHUP, SIG_IGN);
    const auto said = noted("kill -HUP $$; echo lives on");
    std::signal(SIGHUP, before);
    EXPECT_EQ(said, "lives on\n");
    EXPECT_FALSE(backend.real.run("/bin/sh", {"-c", "kill -HUP $$"})) << "ignored by no one";
}

TEST_F(PosixProcessesTest, HandsOnEnvironmentAndWorkingFolder)
{
    ::setenv("TALLOWBAY_TEST", "handed on", 1);
    EXPECT_EQ(
        noted("echo \"$TALLOWBAY_TEST\"; pwd -P"),
        "handed on\n" + fs::current_path().native() + "\n");
    ::unsetenv("TALLOWBAY_TEST");
}

TEST_F(PosixProcessesTest, WaitsOnAfterASignalHandlerHasRun)
{
    struct sigaction interrupting { };
    struct sigaction before { };
    interrupting.sa_handler = [](int) {};
    ::sigaction(SIGUSR2, &interrupting, &before);
    const auto waiting = ::pthread_self();
    std::jthread interrupter([&](std::stop_token stop) {
        while (!stop.stop_requested()) {
            ::pthread_kill(waiting, SIGUSR2);
            std::this_thread::sleep_for(1ms);
        }
    });
    EXPECT_TRUE(backend.real.run("/bin/sleep", {"0.1"}));
    interrupter.request_stop();
    interrupter.join();
    ::sigaction(SIGUSR2, &before, nullptr);
}

TEST_F(PosixProcessesTest, KnowsTheStatusAlsoWhereTheEndOfChildrenWasIgnored)
{
    std::signal(SIGCHLD, SIG_IGN);
    PosixProcesses processes;
    EXPECT_TRUE(processes.run("/bin/true", {}));
    EXPECT_FALSE(processes.run("/bin/false", {}));
}

TEST_F(PosixProcessesTest, RunsFromManyThreadsAtOnce)
{
    std::atomic<int> right = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([&, i] {
                for (int round = 0; round < 10; ++round)
                    right += backend.real.run(i % 2 ? "/bin/true" : "/bin/false", {}) == (i % 2);
            });
    }
    EXPECT_EQ(right, 80);
}

TEST_F(PosixProcessesTest, HoldsNoFileBusyThatAnotherThreadHasJustWritten)
{
    // A child that inherits the descriptor of a script in the making would keep it from starting.
    std::atomic<bool> stop = false;
    std::jthread others([&] {
        while (!stop)
            backend.real.run("/bin/true", {});
    });
    for (int i = 0; i < 30; ++i)
        EXPECT_TRUE(backend.real.run(backend.script("s" + std::to_string(i), "exit 0\n"), {}));
    stop = true;
}

TEST_F(PosixProcessesTest, EndsAChildThatWouldRunOnAfterTheProgram)
{
    std::optional<bool> result;
    std::jthread runner([&] { result = backend.real.run("/bin/sleep", {"1000"}); });
    backend.real.endChildren(20ms);
    runner.join();
    EXPECT_EQ(result, false);
}

TEST_F(PosixProcessesTest, EndsAChildThatDoesNotWantTo)
{
    const auto script = backend.script(
        "stubborn",
        "trap '' TERM\ntouch '" + backend.notes().native() + "'\nwhile true; do sleep 0.1; done\n");
    std::optional<bool> result;
    std::jthread runner([&] { result = backend.real.run(script, {}); });
    while (!fs::exists(backend.notes()))
        std::this_thread::yield();
    backend.real.endChildren(20ms);
    runner.join();
    EXPECT_EQ(result, false);
}

TEST_F(PosixProcessesTest, LetsAChildFinishThatIsQuickEnough)
{
    const auto script =
        backend.script("quick", "touch '" + backend.notes().native() + "'\nsleep 0.05\nexit 0\n");
    std::optional<bool> result;
    std::jthread runner([&] { result = backend.real.run(script, {}); });
    while (!fs::exists(backend.notes()))
        std::this_thread::yield();
    backend.real.endChildren(30s);
    runner.join();
    EXPECT_EQ(result, true);
}

TEST_F(PosixProcessesTest, RunsNothingAnyMoreOnceItsChildrenWereEnded)
{
    backend.real.endChildren(0ms);
    EXPECT_FALSE(backend.real.run("/bin/true", {}));
}

} // namespace

} // namespace tallowbay::posix

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, ProcessesContract, posix::PosixProcessesBackend);
}
