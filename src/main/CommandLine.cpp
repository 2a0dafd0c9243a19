#include "main/CommandLine.h"

namespace tallowbay {

namespace {

const std::string usage = R"(Usage: tallowbay [OPTION]

Keeps every screenshot you take, compressed, ready for one single paste.

Options:
  -h, --help     Show this help and exit
      --version  Show the version and exit
)";

const std::string version = "Tallowbay " TALLOWBAY_VERSION "\n";

PrintAndExit misuse(const std::string& argument)
{
    const bool option = argument.starts_with('-');
    return {
        PrintAndExit::Stream::errors,
        std::string("tallowbay: ") + (option ? "unknown option" : "unexpected argument") + " '"
            + argument + "' (try --help)\n",
        2};
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments)
{
    CommandLine asked = StartProgram();
    for (const std::string& argument : arguments) {
        if (argument == "-h" || argument == "--help")
            asked = PrintAndExit{PrintAndExit::Stream::output, usage, 0};
        else if (argument == "--version")
            asked = PrintAndExit{PrintAndExit::Stream::output, version, 0};
        else
            return misuse(argument);
    }
    return asked;
}

} // namespace tallowbay
