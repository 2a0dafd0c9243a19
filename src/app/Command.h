#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace tallowbay {

// What others may ask of the running program: the desktop's own shortcuts, the actions of its menu
// entry, scripts.
enum class Command { open, ocr, undo, clear, settings, about, quit };

inline constexpr std::array allCommands{Command::open,  Command::ocr,      Command::undo,
                                        Command::clear, Command::settings, Command::about,
                                        Command::quit};

std::string_view nameOf(Command);
std::optional<Command> commandNamed(std::string_view);

// Whether the program is started for it if it does not run: not where there is nothing yet that it
// could act on.
bool startsProgram(Command);

enum class CommandResult {
    done,
    unavailable, // the program lacks the feature
    setupFirst, // not before the user is through the setup
    screenHidden, // the session lets no program see its screen
};

// What was wrong, in one sentence for people. Empty if nothing was.
std::string problemOf(Command, CommandResult);

} // namespace tallowbay
