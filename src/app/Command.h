#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace tallowbay {

// What others may ask of the running program: the desktop's own shortcuts, the actions of its menu
// entry, scripts.
enum class Command { open, ocr, undo, clear, settings, about, quit };

// What there is to know of a command: a new one needs its row in the table, and what it does.
struct CommandRow {
    Command command;
    std::string_view name;
    std::string_view summary; // what it does, in the imperative, for --help
    bool startsProgram; // if it does not run: not where there is nothing yet to act on
};

// In the order of the commands.
inline constexpr std::array commandTable{
    CommandRow{Command::open, "open", "Open or close the editor", true},
    CommandRow{Command::ocr, "ocr", "Copy the text in a region of the screen", true},
    CommandRow{Command::undo, "undo", "Take back the last screenshot", false},
    CommandRow{Command::clear, "clear", "Clear all screenshots from the clipboard", false},
    CommandRow{Command::settings, "settings", "Open the settings", true},
    CommandRow{Command::about, "about", "Show what Tallowbay is", true},
    CommandRow{Command::quit, "quit", "Quit", false},
};

const CommandRow& rowOf(Command);
std::string_view nameOf(Command);
std::optional<Command> commandNamed(std::string_view);
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
