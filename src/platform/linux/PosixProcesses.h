#pragma once

#include "platform/Processes.h"

namespace tallowbay::linux_desktop {

// Child processes by posix_spawn. The child starts with no signal blocked or ignored.
class PosixProcesses : public Processes {
public:
    // Whoever started us may have left the end of children ignored; then there would be no exit
    // status to be had, so that is undone.
    PosixProcesses();

    bool run(
        const std::filesystem::path& program, const std::vector<std::string>& arguments) override;
};

} // namespace tallowbay::linux_desktop
