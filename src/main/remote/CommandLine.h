#pragma once

#include "app/Command.h"

#include <string>
#include <variant>
#include <vector>

namespace tallowbay {

// What the command line asks for: to start, to hand a command to the running program, to tell how
// that fares, or to print something and end.
struct StartProgram {
    bool operator==(const StartProgram&) const = default;
};

struct RunCommand {
    Command command = Command::open;
    bool operator==(const RunCommand&) const = default;
};

// To tell how the running program fares.
struct ShowStatus {
    bool operator==(const ShowStatus&) const = default;
};

struct PrintAndExit {
    enum class Stream { output, errors };
    Stream stream = Stream::output;
    std::string text; // with its line feeds
    int status = 0;
    bool operator==(const PrintAndExit&) const = default;
};

using CommandLine = std::variant<StartProgram, RunCommand, ShowStatus, PrintAndExit>;

// The arguments come without the program's name. What is wrong wins over --help, --help over all
// else; after "--" nothing is an option.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

} // namespace tallowbay
