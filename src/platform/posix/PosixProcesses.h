#pragma once

#include "platform/Processes.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <set>

#include <sys/types.h>

namespace tallowbay::posix {

// Child processes by posix_spawn. The child starts with no signal blocked or ignored.
class PosixProcesses : public Processes {
public:
    // Whoever started us may have left the end of children ignored; then there would be no exit
    // status to be had, so that is undone.
    PosixProcesses();

    bool run(
        const std::filesystem::path& program, const std::vector<std::string>& arguments) override;

    // For the end of the program, any thread: gives the children that are running this long to come
    // to their own end, then as long again to end because they are told to (SIGTERM); after that
    // they are ended (SIGKILL). Nothing is run any more.
    void endChildren(std::chrono::milliseconds grace);

private:
    std::optional<pid_t> startChild(
        const std::filesystem::path& program, const std::vector<std::string>& arguments);
    bool endsWell(pid_t);
    void signalChildren(int number) const;

    std::mutex mutex;
    std::condition_variable childGone;
    std::set<pid_t> children; // started and not yet reaped
    bool ending = false;
};

} // namespace tallowbay::posix
