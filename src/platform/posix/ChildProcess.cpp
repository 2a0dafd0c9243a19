#include "platform/posix/ChildProcess.h"

#include "platform/posix/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowbay::posix {

namespace {

// The child's descriptors: the three that every program has, nothing else.
class FileActions {
public:
    explicit FileActions(std::optional<int> output)
    {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        if (output)
            ::posix_spawn_file_actions_adddup2(&actions, *output, STDOUT_FILENO);
        else
            ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    }
    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    posix_spawn_file_actions_t actions;
};

// What a terminal sends to all that runs in it. Where we were told to outlive that, a tool at work
// is to as well; we never ignore them of ourselves.
constexpr int terminalSignals[] = {SIGHUP, SIGINT, SIGQUIT};

class SpawnAttributes {
public:
    SpawnAttributes()
    {
        sigset_t none;
        sigset_t defaults;
        sigemptyset(&none);
        sigfillset(&defaults);
        for (const int signal : terminalSignals)
            sigdelset(&defaults, signal);
        ::posix_spawnattr_init(&attributes);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        ::posix_spawnattr_setsigdefault(&attributes, &defaults);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    posix_spawnattr_t attributes;
};

// Empty if the other end is not closed within the limit.
std::optional<std::string> readUntilClosed(int descriptor, std::chrono::milliseconds limit)
{
    using Steady = std::chrono::steady_clock;
    const auto end = Steady::now() + limit;
    std::string text;
    std::array<char, 4096> piece;
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Steady::now());
        pollfd waiting{descriptor, POLLIN, 0};
        const int ready = ::poll(&waiting, 1, std::max(0, int(left.count())));
        if (ready == 0)
            return std::nullopt;
        const ssize_t count = ready < 0 ? -1 : ::read(descriptor, piece.data(), piece.size());
        if (count == 0)
            return text;
        if (count < 0 && errno != EINTR)
            return std::nullopt;
        text.append(piece.data(), std::size_t(std::max<ssize_t>(count, 0)));
    }
}

bool endsWell(pid_t child)
{
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

std::optional<pid_t> spawnChild(
    const std::filesystem::path& program, std::vector<std::string> arguments,
    std::optional<int> output)
{
    std::string name = program;
    std::vector<char*> argv{name.data()};
    for (auto& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    const FileActions files(output);
    const SpawnAttributes attributes;
    pid_t child = 0;
    const int error = ::posix_spawn(
        &child, name.c_str(), &files.actions, &attributes.attributes, argv.data(), environ);
    return error == 0 ? std::optional(child) : std::nullopt;
}

std::optional<std::string> outputOf(
    const std::filesystem::path& program, const std::vector<std::string>& arguments,
    std::chrono::milliseconds limit)
{
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    const FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    const auto child = spawnChild(program, arguments, writing.get());
    writing = FileDescriptor();
    if (!child)
        return std::nullopt;
    auto text = readUntilClosed(reading.get(), limit);
    if (!text)
        ::kill(*child, SIGKILL);
    return endsWell(*child) ? text : std::nullopt;
}

} // namespace tallowbay::posix
