#include "platform/headless/ScriptedProcesses.h"

namespace tallowbay::headless {

bool ScriptedProcesses::run(
    const std::filesystem::path& program, const std::vector<std::string>& arguments)
{
    journal.push_back({program, arguments});
    const auto found = programs.find(program);
    return found != programs.end() && found->second(arguments) == 0;
}

} // namespace tallowbay::headless
