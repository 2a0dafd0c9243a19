#pragma once

#include "platform/Pasteboard.h"

#include <gmock/gmock.h>

#include <utility>

namespace tallowbay::contract {

// All pasteboards keep their header's promises. A backend offers:
//   Pasteboard& pasteboard();
//   std::vector<std::filesystem::path> pastedFiles(); // what another program receives as files
//   std::string pastedText(); // what another program receives as text
//   void copyFilesElsewhere(const std::vector<std::filesystem::path>&); // in another program
//   void copyTextElsewhere(const std::string&);
//   void startKeeper(); // the desktop's keeper of texts; none is there before
//   std::string keptText(); // what it was given
template <typename Backend> class PasteboardContract : public testing::Test {
protected:
    Backend backend;
    Pasteboard& pasteboard = backend.pasteboard();
    const std::vector<std::filesystem::path> files{"/b.png", "/folder/a.png", "/c.png"};
};

TYPED_TEST_SUITE_P(PasteboardContract);

TYPED_TEST_P(PasteboardContract, FilesArriveInTheirOrder)
{
    this->pasteboard.writeFiles(this->files);
    EXPECT_EQ(this->backend.pastedFiles(), this->files);
}

TYPED_TEST_P(PasteboardContract, EveryByteOfANameArrives)
{
    std::string everyByte = "/";
    for (int byte = 1; byte < 256; ++byte)
        everyByte += char(byte);
    const std::vector<std::filesystem::path> names{"/with blank",     "/'single' \"double\"",
                                                   "/line\nfeed\r\n", "/latin \xe9 \xff",
                                                   "/100%25 #1?.png", everyByte};
    this->pasteboard.writeFiles(names);
    EXPECT_EQ(this->backend.pastedFiles(), names);
}

TYPED_TEST_P(PasteboardContract, FilesComeWithoutText)
{
    this->pasteboard.writeFiles(this->files);
    EXPECT_EQ(this->backend.pastedText(), "");
}

TYPED_TEST_P(PasteboardContract, TextArrivesWithoutFiles)
{
    const std::string text = "first line\nzwei \u00fc \u65e5\u672c";
    this->pasteboard.writeText(text);
    EXPECT_EQ(this->backend.pastedText(), text);
    EXPECT_THAT(this->backend.pastedFiles(), testing::IsEmpty());
    EXPECT_THAT(this->pasteboard.readFiles(), testing::IsEmpty());
}

TYPED_TEST_P(PasteboardContract, AfterClearNothingIsPasted)
{
    this->pasteboard.writeFiles(this->files);
    this->pasteboard.clear();
    EXPECT_THAT(this->backend.pastedFiles(), testing::IsEmpty());
    EXPECT_EQ(this->backend.pastedText(), "");
    EXPECT_THAT(this->pasteboard.readFiles(), testing::IsEmpty());
}

TYPED_TEST_P(PasteboardContract, NoFilesAreAsClear)
{
    this->pasteboard.writeFiles(this->files);
    this->pasteboard.writeFiles({});
    EXPECT_THAT(this->backend.pastedFiles(), testing::IsEmpty());
    EXPECT_THAT(this->pasteboard.readFiles(), testing::IsEmpty());
}

TYPED_TEST_P(PasteboardContract, AWriteReplacesWhatWasThere)
{
    this->pasteboard.writeText("text");
    this->pasteboard.writeFiles(this->files);
    this->pasteboard.writeFiles({"/last.png"});
    EXPECT_EQ(this->backend.pastedFiles(), std::vector<std::filesystem::path>{"/last.png"});
    EXPECT_EQ(this->backend.pastedText(), "");
}

TYPED_TEST_P(PasteboardContract, ReadsItsOwnFiles)
{
    this->pasteboard.writeFiles(this->files);
    EXPECT_EQ(this->pasteboard.readFiles(), this->files);
}

TYPED_TEST_P(PasteboardContract, ReadsTheFilesOfOthers)
{
    const std::vector<std::filesystem::path> others{"/x y.png", "/\xe9", "/z"};
    this->pasteboard.writeFiles(this->files);
    this->backend.copyFilesElsewhere(others);
    EXPECT_EQ(this->pasteboard.readFiles(), others);
}

TYPED_TEST_P(PasteboardContract, ReadsNoFilesFromTheTextOfOthers)
{
    this->pasteboard.writeFiles(this->files);
    this->backend.copyTextElsewhere("text");
    EXPECT_THAT(this->pasteboard.readFiles(), testing::IsEmpty());
}

TYPED_TEST_P(PasteboardContract, CountsItsOwnChanges)
{
    std::int64_t count = this->pasteboard.changeCount();
    const auto grows = [&] {
        const std::int64_t before = std::exchange(count, this->pasteboard.changeCount());
        return count > before;
    };
    this->pasteboard.writeFiles(this->files);
    EXPECT_TRUE(grows());
    this->pasteboard.writeText("text");
    EXPECT_TRUE(grows());
    this->pasteboard.clear();
    EXPECT_TRUE(grows());
    EXPECT_FALSE(grows());
}

TYPED_TEST_P(PasteboardContract, CountsTheChangesOfOthers)
{
    this->pasteboard.writeFiles(this->files);
    const std::int64_t written = this->pasteboard.changeCount();
    this->backend.copyTextElsewhere("text");
    const std::int64_t copied = this->pasteboard.changeCount();
    EXPECT_GT(copied, written);
    this->backend.copyFilesElsewhere({"/x"});
    EXPECT_GT(this->pasteboard.changeCount(), copied);
}

TYPED_TEST_P(PasteboardContract, OthersPastingChangesNoCount)
{
    this->pasteboard.writeFiles(this->files);
    const std::int64_t written = this->pasteboard.changeCount();
    this->backend.pastedFiles();
    this->pasteboard.readFiles();
    EXPECT_EQ(this->pasteboard.changeCount(), written);
}

TYPED_TEST_P(PasteboardContract, HandsItsTextOver)
{
    this->backend.startKeeper();
    this->pasteboard.writeText("kept \u00fc");
    EXPECT_TRUE(this->pasteboard.handOver(std::chrono::seconds(1)));
    EXPECT_EQ(this->backend.keptText(), "kept \u00fc");
}

TYPED_TEST_P(PasteboardContract, HandsNothingElseOver)
{
    this->backend.startKeeper();
    EXPECT_FALSE(this->pasteboard.handOver(std::chrono::seconds(1)));
    this->pasteboard.writeFiles(this->files);
    EXPECT_FALSE(this->pasteboard.handOver(std::chrono::seconds(1)));
    this->pasteboard.clear();
    EXPECT_FALSE(this->pasteboard.handOver(std::chrono::seconds(1)));
    this->pasteboard.writeText("ours");
    this->backend.copyTextElsewhere("theirs");
    EXPECT_FALSE(this->pasteboard.handOver(std::chrono::seconds(1)));
    EXPECT_EQ(this->backend.keptText(), "");
}

TYPED_TEST_P(PasteboardContract, TellsThatNobodyKeepsTheText)
{
    this->pasteboard.writeText("text");
    EXPECT_FALSE(this->pasteboard.handOver(std::chrono::seconds(1)));
}

REGISTER_TYPED_TEST_SUITE_P(
    PasteboardContract, FilesArriveInTheirOrder, EveryByteOfANameArrives, FilesComeWithoutText,
    TextArrivesWithoutFiles, AfterClearNothingIsPasted, NoFilesAreAsClear,
    AWriteReplacesWhatWasThere, ReadsItsOwnFiles, ReadsTheFilesOfOthers,
    ReadsNoFilesFromTheTextOfOthers, CountsItsOwnChanges, CountsTheChangesOfOthers,
    OthersPastingChangesNoCount, HandsItsTextOver, HandsNothingElseOver,
    TellsThatNobodyKeepsTheText);

} // namespace tallowbay::contract
