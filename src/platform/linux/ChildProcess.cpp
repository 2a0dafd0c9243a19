#include "platform/linux/ChildProcess.h"

#include "platform/linux/FileBytes.h"
#include "platform/linux/FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowbay::linux_desktop {

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

class SpawnAttributes {
public:
    SpawnAttributes()
    {
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        ::posix_spawnattr_init(&attributes);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        ::posix_spawnattr_setsigdefault(&attributes, &all);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    posix_spawnattr_t attributes;
};

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
    const std::filesystem::path& program, const std::vector<std::string>& arguments)
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
    std::string text;
    const bool whole = readAll(reading.get(), text);
    return endsWell(*child) && whole ? std::optional(text) : std::nullopt;
}

} // namespace tallowbay::linux_desktop
