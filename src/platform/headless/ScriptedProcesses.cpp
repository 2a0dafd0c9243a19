#include "platform/headless/ScriptedProcesses.h"

namespace tallowbay::headless {

bool ScriptedProcesses::run(
    const std::filesystem::path& program, const std::vector<std::string>& arguments)
{
    journal.push_back({program, arguments});
    const auto found = programs.find(program);
    return found != programs.end() && found->second(arguments) == 0;
}

std::filesystem::path HeadlessResources::executable(const std::string& name) const
{
    const auto found = executables.find(name);
    return found == executables.end() ? std::filesystem::path() : found->second;
}

} // namespace tallowbay::headless
