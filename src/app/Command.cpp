#include "app/Command.h"

#include <algorithm>

namespace tallowbay {

const CommandRow& rowOf(Command command)
{
    return commandTable.at(static_cast<std::size_t>(command));
}

std::string_view nameOf(Command command)
{
    return rowOf(command).name;
}

std::optional<Command> commandNamed(std::string_view name)
{
    const auto* found = std::ranges::find(commandTable, name, &CommandRow::name);
    return found == commandTable.end() ? std::nullopt : std::optional(found->command);
}

bool startsProgram(Command command)
{
    return rowOf(command).startsProgram;
}

std::string problemOf(Command command, CommandResult result)
{
    switch (result) {
    case CommandResult::unavailable:
        return "'" + std::string(nameOf(command)) + "' is not available in this version";
    case CommandResult::setupFirst:
        return "'" + std::string(nameOf(command)) + "' works once the setup is done";
    case CommandResult::screenHidden:
        return "'" + std::string(nameOf(command))
            + "' does not work here: this session hides its screen from programs";
    case CommandResult::done:
        break;
    }
    return {};
}

} // namespace tallowbay
