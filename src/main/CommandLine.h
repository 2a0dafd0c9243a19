#pragma once

#include <string>
#include <variant>
#include <vector>

namespace tallowbay {

// What the command line asks for: to start, or to print something and end.
struct StartProgram {
    bool operator==(const StartProgram&) const = default;
};

struct PrintAndExit {
    enum class Stream { output, errors };
    Stream stream = Stream::output;
    std::string text; // with its line feeds
    int status = 0;
    bool operator==(const PrintAndExit&) const = default;
};

using CommandLine = std::variant<StartProgram, PrintAndExit>;

// The arguments come without the program's name. An option that is not known wins over --help.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

} // namespace tallowbay
