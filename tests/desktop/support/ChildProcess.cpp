#include "desktop/support/ChildProcess.h"

#include "desktop/support/Wait.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace tallowbay::test {
namespace {

// Files in memory: a child that writes much never blocks on a reader.
int memoryFile(const std::string& content = {})
{
    const int file = memfd_create("tallowbay-test", MFD_CLOEXEC);
    if (file < 0 || write(file, content.data(), content.size()) != ssize_t(content.size())
        || lseek(file, 0, SEEK_SET) != 0)
        throw std::system_error(errno, std::generic_category(), "memfd_create");
    return file;
}

std::string contentOf(int file)
{
    std::string content;
    std::array<char, 65536> piece;
    while (true) {
        const ssize_t count = pread(file, piece.data(), piece.size(), off_t(content.size()));
        if (count <= 0)
            return content;
        content.append(piece.data(), std::size_t(count));
    }
}

std::vector<std::string> merged(const Environment& changes)
{
    std::map<std::string, std::string> all;
    for (char** entry = environ; *entry; ++entry) {
        const std::string pair = *entry;
        const std::size_t equals = pair.find('=');
        all[pair.substr(0, equals)] = equals == pair.npos ? "" : pair.substr(equals + 1);
    }
    for (const auto& [name, value] : changes) {
        all.erase(name);
        if (value)
            all[name] = *value;
    }
    std::vector<std::string> list;
    for (const auto& [name, value] : all)
        list.push_back(name + "=" + value);
    return list;
}

std::vector<char*> pointers(std::vector<std::string>& texts)
{
    std::vector<char*> list;
    for (std::string& text : texts)
        list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

// After fork(): nothing here may allocate.
[[noreturn]] void becomeProgram(
    char* const* arguments, char* const* environment, const int (&standard)[3], int inherited)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // Tests that run in the background of a shell have some ignored.
    for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM})
        ::signal(number, SIG_DFL);
    for (int target = 0; target < 3; ++target)
        dup2(standard[target], target);
    if (inherited >= 0)
        fcntl(inherited, F_SETFD, 0);
    execvpe(arguments[0], arguments, environment);
    _exit(127);
}

} // namespace

ChildProcess::ChildProcess(
    const std::vector<std::string>& command, const Environment& changes, const std::string& input,
    int inheritedDescriptor)
{
    const int standardInput = memoryFile(input);
    standardOutput = memoryFile();
    standardError = memoryFile();
    std::vector<std::string> arguments = command;
    std::vector<std::string> environment = merged(changes);
    const std::vector<char*> argumentList = pointers(arguments);
    const std::vector<char*> environmentList = pointers(environment);
    const int standard[3] = {standardInput, standardOutput, standardError};
    id = fork();
    if (id == 0)
        becomeProgram(argumentList.data(), environmentList.data(), standard, inheritedDescriptor);
    close(standardInput);
    if (id < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
}

ChildProcess::~ChildProcess()
{
    end();
    close(standardOutput);
    close(standardError);
}

bool ChildProcess::running()
{
    reap(false);
    return !status;
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit)
{
    waitUntil([this] { return !running(); }, limit);
    return status;
}

void ChildProcess::signal(int number)
{
    if (running())
        kill(id, number);
}

void ChildProcess::end()
{
    signal(SIGCONT);
    signal(SIGTERM);
    if (wait(std::chrono::seconds(2)))
        return;
    signal(SIGKILL);
    reap(true);
}

std::string ChildProcess::output() const
{
    return contentOf(standardOutput);
}

std::string ChildProcess::errors() const
{
    return contentOf(standardError);
}

void ChildProcess::reap(bool block)
{
    int raw = 0;
    if (status || waitpid(id, &raw, block ? 0 : WNOHANG) != id)
        return;
    status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
}

} // namespace tallowbay::test
