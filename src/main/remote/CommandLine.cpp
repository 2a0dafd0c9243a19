#include "main/remote/CommandLine.h"

namespace tallowbay {

namespace {

const std::string usage = R"(Usage: tallowbay [OPTION]
       tallowbay COMMAND

Keeps every screenshot you take, compressed, ready for one single paste.

Options:
  -h, --help     Show this help and exit
      --version  Show the version and exit

Commands, for the shortcuts of your desktop:
  open      Open or close the editor
  ocr       Copy the text in a region of the screen
  undo      Take back the last screenshot
  clear     Clear all screenshots from the clipboard
  settings  Open the settings
  about     Show what Tallowbay is
  quit      Quit

A command goes to the Tallowbay that runs, through the session bus. If none
runs, open, ocr, settings and about start one; undo, clear and quit fail.

The exit status is 0 if all went well, 1 if something failed, and 2 if the
command line was wrong.
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

bool isHelp(const std::string& argument)
{
    return argument == "-h" || argument == "--help";
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments)
{
    CommandLine asked = StartProgram();
    for (const std::string& argument : arguments) {
        const auto command = commandNamed(argument);
        if (isHelp(argument))
            asked = PrintAndExit{PrintAndExit::Stream::output, usage, 0};
        else if (argument == "--version")
            asked = PrintAndExit{PrintAndExit::Stream::output, version, 0};
        else if (command && arguments.size() == 1)
            asked = RunCommand{*command};
        else
            return misuse(argument);
    }
    return asked;
}

} // namespace tallowbay
