#pragma once

#include "platform/Processes.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// All processes keep their header's promises. A backend offers:
//   Processes& processes();
//   std::filesystem::path programThatExits(int status);
//   std::filesystem::path programThatNotesItsArguments();
//   std::vector<std::string> notedArguments();
template <typename Backend> class ProcessesContract : public testing::Test {
protected:
    Backend backend;
    Processes& processes = backend.processes();
};

TYPED_TEST_SUITE_P(ProcessesContract);

TYPED_TEST_P(ProcessesContract, SucceedsExactlyWithStatusZero)
{
    EXPECT_TRUE(this->processes.run(this->backend.programThatExits(0), {}));
    for (const int status : {1, 2, 99, 127, 255})
        EXPECT_FALSE(this->processes.run(this->backend.programThatExits(status), {}));
}

TYPED_TEST_P(ProcessesContract, FailsWhereThereIsNoProgram)
{
    EXPECT_FALSE(this->processes.run("/nowhere/program", {}));
}

TYPED_TEST_P(ProcessesContract, HandsOverEachArgumentAsItStands)
{
    const std::vector<std::string> arguments{"",     "with blank", "*",  "$HOME",      "`id`",
                                             "a\nb", "'\"\\",      "-o", "latin \xe9", ""};
    EXPECT_TRUE(this->processes.run(this->backend.programThatNotesItsArguments(), arguments));
    EXPECT_EQ(this->backend.notedArguments(), arguments);
}

REGISTER_TYPED_TEST_SUITE_P(
    ProcessesContract, SucceedsExactlyWithStatusZero, FailsWhereThereIsNoProgram,
    HandsOverEachArgumentAsItStands);

} // namespace tallowbay::contract
