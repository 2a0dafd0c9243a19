#include "main/remote/CommandLine.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace tallowbay {

namespace {

constexpr std::string_view usageHead = R"(Usage: tallowbay [OPTION]
       tallowbay COMMAND
       tallowbay status

Keeps every screenshot you take, compressed, ready for one single paste.

Options:
  -h, --help     Show this help, or that of the COMMAND, and exit
  -v, --version  Show the version and exit
      --         What follows is no option

Commands, for the shortcuts of your desktop:
)";

constexpr std::string_view usageTail = R"(
If screenshots go unnoticed or keys do nothing, status tells which folders are
watched and why, what was noticed last, which hotkeys work, and what this
session cannot do. It fails if Tallowbay does not run.

The exit status is 0 if all went well, 1 if something failed, and 2 if the
command line was wrong.
)";

const std::string version = "Tallowbay " TALLOWBAY_VERSION "\n";

std::string commandList()
{
    constexpr std::size_t column = 10;
    std::string list;
    for (const CommandRow& row : commandTable) {
        std::string name(row.name);
        name.resize(std::max(column, name.size() + 2), ' ');
        list.append("  ").append(name).append(row.summary).append("\n");
    }
    return list;
}

std::string namesOfStarters()
{
    std::string names;
    for (const CommandRow& row : commandTable) {
        if (row.startsProgram)
            names.append(names.empty() ? "" : ", ").append(row.name);
    }
    return names;
}

std::string usage()
{
    return std::string(usageHead) + commandList()
        + "\nA command goes to the Tallowbay that runs, through the session bus. If none\n"
          "runs, these start one: "
        + namesOfStarters() + ". The others fail.\n" + std::string(usageTail);
}

std::string usage(Command command)
{
    const CommandRow& row = rowOf(command);
    return "Usage: tallowbay " + std::string(row.name) + "\n\n" + std::string(row.summary)
        + (row.startsProgram ? ". Starts Tallowbay if it does not run.\n"
                             : ". Fails if Tallowbay does not run.\n");
}

constexpr std::string_view statusName = "status";

constexpr std::string_view statusUsage = R"(Usage: tallowbay status

Tell which folders are watched and why, what was noticed last, which hotkeys
work, and what this session cannot do. Fails if Tallowbay does not run.
)";

PrintAndExit misuse(const std::string& what, const std::string& argument)
{
    return {
        PrintAndExit::Stream::errors, "tallowbay: " + what + " '" + argument + "' (try --help)\n",
        2};
}

PrintAndExit show(std::string text)
{
    return {PrintAndExit::Stream::output, std::move(text), 0};
}

bool isOption(const std::string& argument)
{
    return argument.size() > 1 && argument.starts_with('-');
}

// What the arguments said so far.
class Arguments {
public:
    // What is wrong with the argument, if anything is.
    std::optional<PrintAndExit> take(const std::string& argument)
    {
        if (!onlyOperands && isOption(argument))
            return takeOption(argument);
        const bool isFirst = !command && !statusAsked;
        statusAsked = statusAsked || argument == statusName;
        if (isFirst && (statusAsked || (command = commandNamed(argument))))
            return std::nullopt;
        return misuse("unexpected argument", argument);
    }

    CommandLine meaning() const
    {
        if (help)
            return show(usageAsked());
        if (versionAsked)
            return show(version);
        if (statusAsked)
            return ShowStatus();
        return command ? CommandLine(RunCommand{*command}) : StartProgram();
    }

private:
    std::string usageAsked() const
    {
        return statusAsked ? std::string(statusUsage) : command ? usage(*command) : usage();
    }
    std::optional<PrintAndExit> takeOption(const std::string& option)
    {
        if (option == "--")
            onlyOperands = true;
        else if (option == "-h" || option == "--help")
            help = true;
        else if (option == "-v" || option == "--version")
            versionAsked = true;
        else
            return misuse("unknown option", option);
        return std::nullopt;
    }

    std::optional<Command> command;
    bool statusAsked = false;
    bool help = false;
    bool versionAsked = false;
    bool onlyOperands = false;
};

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments)
{
    Arguments asked;
    for (const std::string& argument : arguments) {
        if (const auto problem = asked.take(argument))
            return *problem;
    }
    return asked.meaning();
}

} // namespace tallowbay
