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
    const auto version = printed({"--version"});
    EXPECT_EQ(version.stream, PrintAndExit::Stream::output);
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.text, testing::MatchesRegex("Tallowbay [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(CommandLineTest, HandsOverEachCommand)
{
    for (const Command command : allCommands) {
        const std::string name(nameOf(command));
        EXPECT_EQ(parseCommandLine({name}), CommandLine(RunCommand{command}));
        EXPECT_THAT(printed({"--help"}).text, HasSubstr("\n  " + name + " "));
    }
}

TEST(CommandLineTest, RefusesAnythingBesideACommand)
{
    const PrintAndExit refusal{
        PrintAndExit::Stream::errors, "tallowbay: unexpected argument 'undo' (try --help)\n", 2};
    EXPECT_EQ(printed({"undo", "undo"}), refusal);
    EXPECT_EQ(printed({"undo", "--help"}), refusal);
    EXPECT_EQ(printed({"--version", "undo"}), refusal);
    EXPECT_EQ(printed({"undo", "--nonsense"}), refusal);
}

TEST(CommandLineTest, RefusesAnUnknownOptionInOneLineOfStandardError)
{
    const PrintAndExit refusal{
        PrintAndExit::Stream::errors, "tallowbay: unknown option '--nonsense' (try --help)\n", 2};
    EXPECT_EQ(printed({"--nonsense"}), refusal);
    EXPECT_EQ(printed({"--help", "--nonsense"}), refusal);
}

TEST(CommandLineTest, RefusesAnArgumentThatIsNoOption)
{
    EXPECT_EQ(
        printed({"file.png"}),
        (PrintAndExit{
            PrintAndExit::Stream::errors,
            "tallowbay: unexpected argument 'file.png' (try --help)\n", 2}));
    EXPECT_EQ(printed({""}).status, 2);
}

} // namespace
} // namespace tallowbay
