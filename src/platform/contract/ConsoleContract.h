#pragma once

#include "platform/Console.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

namespace tallowbay::contract {

// Every console keeps its header's promises. A backend offers:
//   Console& console();
//   std::string written();   all that its reader can see in this moment
//   void breakOutput();      from now on nothing can be written
template <typename Backend> class ConsoleContract : public testing::Test {
protected:
    Backend backend;
    Console& console = backend.console();

    std::vector<std::string> writtenLines()
    {
        std::vector<std::string> lines;
        const std::string text = backend.written();
        for (std::size_t start = 0; start < text.size();) {
            const auto end = std::min(text.find('\n', start), text.size());
            lines.push_back(text.substr(start, end - start));
            start = end + 1;
        }
        return lines;
    }
};

TYPED_TEST_SUITE_P(ConsoleContract);

TYPED_TEST_P(ConsoleContract, EndsEachLineWithALineFeed)
{
    this->console.line("✓ saved");
    this->console.line("");
    this->console.line(">>> next");
    EXPECT_EQ(this->backend.written(), "✓ saved\n\n>>> next\n");
}

TYPED_TEST_P(ConsoleContract, WritesALineAtOnce)
{
    this->console.line("first");
    EXPECT_EQ(this->backend.written(), "first\n");
    this->console.line("second");
    EXPECT_EQ(this->backend.written(), "first\nsecond\n");
}

TYPED_TEST_P(ConsoleContract, WritesTheTextAsItStands)
{
    using namespace std::string_literals;
    const auto text = "%s\t\"\\ \x1b[1m \xff zero\0 line\nfeed\r"s;
    this->console.line(text);
    EXPECT_EQ(this->backend.written(), text + '\n');
}

TYPED_TEST_P(ConsoleContract, WritesALongLineWhole)
{
    const std::string text(300'000, 'x');
    this->console.line(text);
    EXPECT_EQ(this->backend.written(), text + '\n');
}

TYPED_TEST_P(ConsoleContract, KeepsTheLinesOfSeveralThreadsApart)
{
    std::vector<std::string> expected;
    std::vector<std::jthread> threads;
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        const std::string text(20'000, letter);
        expected.insert(expected.end(), 20, text);
        threads.emplace_back([this, text] {
            for (int i = 0; i < 20; ++i)
                this->console.line(text);
        });
    }
    threads.clear();
    auto lines = this->writtenLines();
    std::ranges::sort(lines);
    EXPECT_TRUE(lines == expected) << "a line is lost or in pieces";
}

TYPED_TEST_P(ConsoleContract, LosesALineThatCannotBeWrittenWithoutFurtherEffect)
{
    this->console.line("kept");
    EXPECT_EQ(this->backend.written(), "kept\n");
    this->backend.breakOutput();
    this->console.line("lost");
    this->console.line("lost, too");
    EXPECT_EQ(this->backend.written(), "kept\n");
}

REGISTER_TYPED_TEST_SUITE_P(
    ConsoleContract, EndsEachLineWithALineFeed, WritesALineAtOnce, WritesTheTextAsItStands,
    WritesALongLineWhole, KeepsTheLinesOfSeveralThreadsApart,
    LosesALineThatCannotBeWrittenWithoutFurtherEffect);

} // namespace tallowbay::contract
