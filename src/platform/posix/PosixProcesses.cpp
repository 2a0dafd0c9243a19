#include "platform/posix/PosixProcesses.h"

#include "platform/posix/ChildProcess.h"

#include <cerrno>
#include <optional>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowbay::posix {

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
    const auto child = spawnChild(program, arguments);
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
    for (const int number : {SIGTERM, SIGKILL}) {
        childGone.wait_for(lock, grace, [this] { return children.empty(); });
        signalChildren(number);
    }
}

void PosixProcesses::signalChildren(int number) const
{
    for (const pid_t child : children)
        ::kill(child, number);
}

} // namespace tallowbay::posix
