#include "app/Command.h"

#include <algorithm>

namespace tallowbay {

namespace {

// In the order of the commands.
constexpr std::array<std::string_view, allCommands.size()> names{
    "open", "ocr", "undo", "clear", "settings", "about", "quit"};

} // namespace

std::string_view nameOf(Command command)
{
    return names.at(static_cast<std::size_t>(command));
}

std::optional<Command> commandNamed(std::string_view name)
{
    const auto* found =
        std::ranges::find_if(allCommands, [&](Command command) { return nameOf(command) == name; });
    return found == allCommands.end() ? std::nullopt : std::optional(*found);
}

bool startsProgram(Command command)
{
    return command != Command::undo && command != Command::clear && command != Command::quit;
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
