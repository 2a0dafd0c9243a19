#include "app/Command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using testing::ElementsAre;

TEST(CommandTest, IsKnownByItsName)
{
    std::vector<std::string_view> names;
    for (const CommandRow& row : commandTable) {
        names.push_back(row.name);
        EXPECT_EQ(nameOf(row.command), row.name);
        EXPECT_EQ(commandNamed(row.name), row.command);
    }
    EXPECT_THAT(names, ElementsAre("open", "ocr", "undo", "clear", "settings", "about", "quit"));
}

TEST(CommandTest, HasNoOtherNames)
{
    for (const char* name : {"", "Open", "open ", "opens", "--open", "help"})
        EXPECT_EQ(commandNamed(name), std::nullopt) << name;
}

TEST(CommandTest, StartsTheProgramOnlyWhereThatMakesSense)
{
    std::vector<Command> starting;
    for (const CommandRow& row : commandTable) {
        if (startsProgram(row.command))
            starting.push_back(row.command);
    }
    EXPECT_THAT(
        starting, ElementsAre(Command::open, Command::ocr, Command::settings, Command::about));
}

TEST(CommandTest, SaysWhatWasWrong)
{
    EXPECT_EQ(problemOf(Command::undo, CommandResult::done), "");
    EXPECT_EQ(
        problemOf(Command::open, CommandResult::unavailable),
        "'open' is not available in this version");
    EXPECT_EQ(
        problemOf(Command::ocr, CommandResult::setupFirst), "'ocr' works once the setup is done");
    EXPECT_EQ(
        problemOf(Command::ocr, CommandResult::screenHidden),
        "'ocr' does not work here: this session hides its screen from programs");
}

} // namespace
} // namespace tallowbay
