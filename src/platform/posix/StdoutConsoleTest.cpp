#include "platform/posix/StdoutConsole.h"

#include "platform/contract/ConsoleContract.h"
#include "support/TemporaryFolder.h"

#include <csignal>
#include <fstream>
#include <mutex>
#include <sstream>
#include <thread>

#include <fcntl.h>
#include <poll.h>

namespace tallowbay::posix {

namespace {

struct Pipe {
    explicit Pipe(int flags) { EXPECT_EQ(::pipe2(ends, O_CLOEXEC | flags), 0); }
    ~Pipe()
    {
        closeReader();
        ::close(ends[1]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    void closeReader()
    {
        if (ends[0] >= 0)
            ::close(std::exchange(ends[0], -1));
    }

    // What one call of the system gives.
    std::string readOnce(std::size_t most = 65536)
    {
        std::string text(most, '\0');
        const auto count = ::read(ends[0], text.data(), most);
        text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return text;
    }

    int ends[2] = {-1, -1};
};

// A pipe that somebody reads all the time, since it holds little.
template <int writerFlags> class PipeBackend {
public:
    PipeBackend()
    {
        ::fcntl(pipe.ends[0], F_SETFL, O_NONBLOCK);
        ::fcntl(pipe.ends[1], F_SETFL, writerFlags);
    }

    Console& console() { return output; }
    std::string written()
    {
        drain();
        const std::scoped_lock lock(mutex);
        return seen;
    }
    void breakOutput()
    {
        reader = {};
        pipe.closeReader();
    }

private:
    void readOn(const std::stop_token& end)
    {
        pollfd waiting{pipe.ends[0], POLLIN, 0};
        while (!end.stop_requested())
            if (::poll(&waiting, 1, 10) > 0)
                drain();
    }
    void drain()
    {
        const std::scoped_lock lock(mutex);
        for (std::string text; !(text = pipe.readOnce()).empty();)
            seen += text;
    }

    Pipe pipe{0};
    StdoutConsole output{pipe.ends[1]};
    std::mutex mutex;
    std::string seen;
    std::jthread reader{[this](const std::stop_token& end) { readOn(end); }};
};

struct FileBackend {
    test::TemporaryFolder folder;
    const int file = ::open(path().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    StdoutConsole output{file};

    ~FileBackend() { ::close(file); }
    std::filesystem::path path() const { return folder.path / "output"; }
    Console& console() { return output; }
    std::string written()
    {
        std::ostringstream text;
        text << std::ifstream(path()).rdbuf();
        return text.str();
    }
    void breakOutput()
    {
        const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
        EXPECT_EQ(::dup2(full, file), file);
        ::close(full);
    }
};

TEST(StdoutConsoleTest, WritesAShortLineInOnePiece)
{
    // Gives each writing by itself, as if other programs wrote to the same pipe in between.
    Pipe pipe(O_DIRECT);
    StdoutConsole console(pipe.ends[1]);
    console.line("first");
    console.line("second");
    EXPECT_EQ(pipe.readOnce(), "first\n");
    EXPECT_EQ(pipe.readOnce(), "second\n");
}

TEST(StdoutConsoleTest, LeavesNoSignalOfAReaderThatHasGone)
{
    Pipe pipe(0);
    StdoutConsole console(pipe.ends[1]);
    pipe.closeReader();
    console.line("lost");
    sigset_t pending;
    ::sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST(StdoutConsoleTest, SurvivesAClosedOutput)
{
    StdoutConsole console(-1);
    console.line("lost");
}

} // namespace

} // namespace tallowbay::posix

namespace tallowbay::contract {
using Outputs =
    testing::Types<posix::PipeBackend<0>, posix::PipeBackend<O_NONBLOCK>, posix::FileBackend>;
INSTANTIATE_TYPED_TEST_SUITE_P(Stdout, ConsoleContract, Outputs);
} // namespace tallowbay::contract
