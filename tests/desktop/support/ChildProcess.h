#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tallowbay::test {

// What a child's environment has beside or instead of ours; an empty optional removes a variable.
using Environment = std::map<std::string, std::optional<std::string>>;

// A program that a test started. It ends with this object, and also if the test itself crashes.
class ChildProcess {
public:
    // Starts the program, which is looked up in PATH, and feeds it the input. Throws
    // std::system_error if it cannot be started.
    ChildProcess(
        const std::vector<std::string>& command, const Environment&, const std::string& input = {},
        int inheritedDescriptor = -1);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    pid_t pid() const { return id; }
    bool running();

    // The exit status, or 128 plus the signal that ended it. Empty if it still runs after the
    // limit.
    std::optional<int> wait(std::chrono::milliseconds limit = std::chrono::seconds(30));

    void signal(int number);

    // SIGTERM; two seconds later SIGKILL.
    void end();

    // All that it has written so far.
    std::string output() const;
    std::string errors() const;

private:
    void reap(bool block);

    pid_t id = -1;
    std::optional<int> status;
    int standardOutput = -1;
    int standardError = -1;
};

} // namespace tallowbay::test
