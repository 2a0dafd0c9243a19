#pragma once

#include "platform/Processes.h"

#include <functional>
#include <map>

namespace tallowbay::headless {

// Programs are functions of the test: they get the arguments, may act on the disk in memory, and
// return an exit status. Every start is kept in a journal, also one that fails.
class ScriptedProcesses final : public Processes {
public:
    using Program = std::function<int(const std::vector<std::string>& arguments)>;
    struct Call {
        std::filesystem::path program;
        std::vector<std::string> arguments;
        bool operator==(const Call&) const = default;
    };

    bool run(
        const std::filesystem::path& program, const std::vector<std::string>& arguments) override;

    void install(const std::filesystem::path& path, Program program)
    {
        programs[path] = std::move(program);
    }

    std::vector<Call> journal;

private:
    std::map<std::filesystem::path, Program> programs;
};

} // namespace tallowbay::headless
