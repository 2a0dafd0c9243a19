#pragma once

#include "platform/FileTransfer.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// Every file transfer keeps its header's promises. A backend, on a desktop that does such a thing,
// offers:
//   FileTransfer& transfer();
//   void setAvailable(bool);      the desktop does it from now on, or does not
//   void setFailing();            from now on the desktop makes no keys
//   bool runUntil(condition);     runs the main queue until it holds; false if it never does
//   FileTransfer::Files files(std::size_t count);         that are there
//   FileTransfer::Files filesOf(const std::string& key);  which another program gets for it
template <typename Backend> class FileTransferContract : public testing::Test {
protected:
    FileTransferContract()
    {
        EXPECT_TRUE(backend.runUntil([this] { return transfer.available(); }));
    }

    std::optional<std::string> keyTo(const FileTransfer::Files& files)
    {
        std::vector<std::optional<std::string>> replies;
        transfer.begin(files, [&](const auto& key) { replies.push_back(key); });
        EXPECT_TRUE(replies.empty()) << "not inside the call";
        EXPECT_TRUE(backend.runUntil([&] { return !replies.empty(); }));
        return replies.at(0);
    }

    Backend backend;
    FileTransfer& transfer = backend.transfer();
};

TYPED_TEST_SUITE_P(FileTransferContract);

TYPED_TEST_P(FileTransferContract, GivesTheFilesForTheirKeyUntilItIsEnded)
{
    const auto two = this->backend.files(2);
    const auto many = this->backend.files(40);
    const auto keyToTwo = this->keyTo(two);
    const auto keyToMany = this->keyTo(many);
    ASSERT_TRUE(keyToTwo && keyToMany);
    EXPECT_EQ(this->backend.filesOf(*keyToTwo), two);
    EXPECT_EQ(this->backend.filesOf(*keyToMany), many);
    EXPECT_EQ(this->backend.filesOf(*keyToTwo), two) << "as often as they are asked for";

    this->transfer.end(*keyToTwo);
    this->transfer.end("no key");
    EXPECT_TRUE(this->backend.runUntil([&] { return this->backend.filesOf(*keyToTwo).empty(); }));
    EXPECT_EQ(this->backend.filesOf(*keyToMany), many);
}

TYPED_TEST_P(FileTransferContract, IsAvailableWhileTheDesktopIsAbleToDoIt)
{
    for (const bool available : {false, true, false}) {
        this->backend.setAvailable(available);
        EXPECT_TRUE(
            this->backend.runUntil([&] { return this->transfer.available() == available; }));
    }
    this->transfer.end("of before");
}

TYPED_TEST_P(FileTransferContract, RepliesWithoutAKeyWhereNoneIsMade)
{
    this->backend.setFailing();
    EXPECT_EQ(this->keyTo(this->backend.files(1)), std::nullopt);
}

REGISTER_TYPED_TEST_SUITE_P(
    FileTransferContract, GivesTheFilesForTheirKeyUntilItIsEnded,
    IsAvailableWhileTheDesktopIsAbleToDoIt, RepliesWithoutAKeyWhereNoneIsMade);

} // namespace tallowbay::contract
