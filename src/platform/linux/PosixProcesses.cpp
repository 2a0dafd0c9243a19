#include "platform/linux/PosixProcesses.h"

#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowbay::linux_desktop {

namespace {

// The child's descriptors: the null device three times, nothing else.
class FileActions {
public:
    FileActions()
    {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
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

std::optional<pid_t> spawn(std::string program, std::vector<std::string> arguments)
{
    std::vector<char*> argv{program.data()};
    for (auto& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    const FileActions files;
    const SpawnAttributes attributes;
    pid_t child = 0;
    const int error = ::posix_spawn(
        &child, program.c_str(), &files.actions, &attributes.attributes, argv.data(), environ);
    return error == 0 ? std::optional(child) : std::nullopt;
}

} // namespace

PosixProcesses::PosixProcesses()
{
    struct sigaction childEnded;
    if (::sigaction(SIGCHLD, nullptr, &childEnded) == 0 && childEnded.sa_handler == SIG_IGN)
        ::signal(SIGCHLD, SIG_DFL);
}

bool PosixProcesses::run(
    const std::filesystem::path& program, const std::vector<std::string>& arguments)
{
    const auto child = startChild(program, arguments);
    return child && endsWell(*child);
}

std::optional<pid_t> PosixProcesses::startChild(
    const std::filesystem::path& program, const std::vector<std::string>& arguments)
{
    const std::scoped_lock lock(mutex);
    if (ending)
        return std::nullopt;
    const auto child = spawn(program, arguments);
    if (child)
        children.insert(*child);
    return child;
}

// Reaps it only once it is out of the list: until then its number cannot be another process's.
bool PosixProcesses::endsWell(pid_t child)
{
    siginfo_t end{};
    while (::waitid(P_PID, id_t(child), &end, WEXITED | WNOWAIT) < 0 && errno == EINTR) { }
    const std::scoped_lock lock(mutex);
    children.erase(child);
    childGone.notify_all();
    ::waitpid(child, nullptr, 0);
    return end.si_code == CLD_EXITED && end.si_status == 0;
}

void PosixProcesses::endChildren(std::chrono::milliseconds grace)
{
    std::unique_lock lock(mutex);
    ending = true;
    childGone.wait_for(lock, grace, [this] { return children.empty(); });
    for (const pid_t child : children)
        ::kill(child, SIGTERM);
}

} // namespace tallowbay::linux_desktop
