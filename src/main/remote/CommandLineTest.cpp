#include "main/remote/CommandLine.h"

#include <gmock/gmock.h>

namespace tallowbay {
namespace {

using testing::HasSubstr;

PrintAndExit printed(const std::vector<std::string>& arguments)
{
    return std::get<PrintAndExit>(parseCommandLine(arguments));
}

TEST(CommandLineTest, StartsTheProgramWithoutArguments)
{
    EXPECT_EQ(parseCommandLine({}), CommandLine(StartProgram()));
}

TEST(CommandLineTest, ShowsHelpOnStandardOutput)
{
    for (const char* option : {"-h", "--help"}) {
        const auto help = printed({option});
        EXPECT_EQ(help.stream, PrintAndExit::Stream::output);
        EXPECT_EQ(help.status, 0);
        EXPECT_THAT(help.text, HasSubstr("Usage: tallowbay"));
        EXPECT_THAT(help.text, HasSubstr("--version"));
        EXPECT_EQ(help.text.back(), '\n');
    }
}

TEST(CommandLineTest, ShowsTheVersionOnStandardOutput)
{
    for (const char* option : {"-v", "--version"}) {
        const auto version = printed({option});
        EXPECT_EQ(version.stream, PrintAndExit::Stream::output);
        EXPECT_EQ(version.status, 0);
        EXPECT_THAT(version.text, testing::MatchesRegex("Tallowbay [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    }
}

TEST(CommandLineTest, HandsOverEachCommand)
{
    for (const CommandRow& row : commandTable) {
        const std::string name(row.name);
        EXPECT_EQ(parseCommandLine({name}), CommandLine(RunCommand{row.command}));
        EXPECT_THAT(
            printed({"--help"}).text,
            testing::ContainsRegex("\n  " + name + " +" + std::string(row.summary) + "\n"));
    }
}

TEST(CommandLineTest, HelpsWithEachCommandInsteadOfRunningIt)
{
    for (const CommandRow& row : commandTable) {
        const std::string name(row.name);
        const auto help = printed({name, "--help"});
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.stream, PrintAndExit::Stream::output);
        EXPECT_THAT(help.text, testing::StartsWith("Usage: tallowbay " + name + "\n"));
        EXPECT_THAT(help.text, HasSubstr(std::string(row.summary) + ". "));
        EXPECT_EQ(printed({name, "-h"}), help);
        EXPECT_EQ(printed({"--help", name}), help);
        EXPECT_EQ(printed({name, "--version"}), printed({"--version"}));
    }
    EXPECT_THAT(printed({"open", "-h"}).text, HasSubstr("Starts Tallowbay if it does not run."));
    EXPECT_THAT(printed({"undo", "-h"}).text, HasSubstr("Fails if Tallowbay does not run."));
}

TEST(CommandLineTest, AsksForTheStatus)
{
    EXPECT_EQ(parseCommandLine({"status"}), CommandLine(ShowStatus()));
    EXPECT_EQ(parseCommandLine({"--", "status"}), CommandLine(ShowStatus()));
    EXPECT_THAT(printed({"status", "-h"}).text, testing::StartsWith("Usage: tallowbay status\n"));
    EXPECT_THAT(printed({"--help"}).text, HasSubstr("\n       tallowbay status\n"));
    EXPECT_EQ(printed({"status", "undo"}).status, 2);
    EXPECT_EQ(printed({"undo", "status"}).status, 2);
    EXPECT_EQ(printed({"status", "status"}).status, 2);
}

TEST(CommandLineTest, TakesNoOptionAfterTwoDashes)
{
    const CommandLine undo = RunCommand{Command::undo};
    EXPECT_EQ(parseCommandLine({"--"}), CommandLine(StartProgram()));
    EXPECT_EQ(parseCommandLine({"--", "undo"}), undo);
    EXPECT_EQ(parseCommandLine({"undo", "--"}), undo);
    EXPECT_EQ(
        printed({"--", "--help"}).text, "tallowbay: unexpected argument '--help' (try --help)\n");
    EXPECT_EQ(printed({"--", "--"}).status, 2);
}

TEST(CommandLineTest, RefusesASecondCommand)
{
    const PrintAndExit refusal{
        PrintAndExit::Stream::errors, "tallowbay: unexpected argument 'clear' (try --help)\n", 2};
    EXPECT_EQ(printed({"undo", "clear"}), refusal);
    EXPECT_EQ(printed({"--help", "undo", "clear"}), refusal);
}

TEST(CommandLineTest, RefusesAnUnknownOptionInOneLineOfStandardError)
{
    const PrintAndExit refusal{
        PrintAndExit::Stream::errors, "tallowbay: unknown option '--nonsense' (try --help)\n", 2};
    EXPECT_EQ(printed({"--nonsense"}), refusal);
    EXPECT_EQ(printed({"--help", "--nonsense"}), refusal);
    EXPECT_EQ(printed({"undo", "--nonsense"}), refusal);
}

TEST(CommandLineTest, RefusesAnArgumentThatIsNoOption)
{
    EXPECT_EQ(
        printed({"file.png"}),
        (PrintAndExit{
            PrintAndExit::Stream::errors,
            "tallowbay: unexpected argument 'file.png' (try --help)\n", 2}));
    EXPECT_EQ(printed({""}).status, 2);
    EXPECT_THAT(printed({"-"}).text, HasSubstr("unexpected argument '-'"));
}

} // namespace
} // namespace tallowbay
