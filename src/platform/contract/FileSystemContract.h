#pragma once

#include "platform/FileSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace tallowbay::contract {

// Every file system keeps its header's promises. A backend offers:
//   FileSystem& files();
//   std::filesystem::path folder();   an empty folder to work in
//   WallTime now();                   the time that the files' dates go by
//   void rename(path from, path to);
//   void awaitNextDate();             until a new entry has another date than the last one
template <typename Backend> class FileSystemContract : public testing::Test {
protected:
    using Path = std::filesystem::path;

    Backend backend;
    FileSystem& files = backend.files();
    const Path folder = backend.folder();

    std::vector<Path> sortedList(const Path& listed)
    {
        auto entries = files.list(listed).value_or(std::vector<Path>{"cannot be listed"});
        std::ranges::sort(entries);
        return entries;
    }
};

TYPED_TEST_SUITE_P(FileSystemContract);

TYPED_TEST_P(FileSystemContract, ReadsBackWhatWasWritten)
{
    const auto path = this->folder / "file";
    const std::string bytes("a\0b\n\xff", 5);
    EXPECT_TRUE(this->files.writeAtomically(path, bytes));
    EXPECT_EQ(this->files.read(path), bytes);
    EXPECT_EQ(this->files.size(path), 5u);
    EXPECT_TRUE(this->files.exists(path));
    EXPECT_FALSE(this->files.isDirectory(path));
}

TYPED_TEST_P(FileSystemContract, ReplacesWhatWasThereAndLeavesNothingBeside)
{
    const auto path = this->folder / "file";
    EXPECT_TRUE(this->files.writeAtomically(path, "a longer first text"));
    EXPECT_TRUE(this->files.writeAtomically(path, "second"));
    EXPECT_EQ(this->files.read(path), "second");
    EXPECT_EQ(this->sortedList(this->folder), std::vector{path});
}

TYPED_TEST_P(FileSystemContract, WritesAnEmptyFile)
{
    const auto path = this->folder / "empty";
    EXPECT_TRUE(this->files.writeAtomically(path, ""));
    EXPECT_EQ(this->files.read(path), "");
    EXPECT_EQ(this->files.size(path), 0u);
}

TYPED_TEST_P(FileSystemContract, WritesNoFileIntoAFolderThatIsNotThere)
{
    EXPECT_FALSE(this->files.writeAtomically(this->folder / "absent" / "file", "x"));
    EXPECT_FALSE(this->files.exists(this->folder / "absent"));
}

TYPED_TEST_P(FileSystemContract, WritesNoFileInPlaceOfAFolder)
{
    const auto path = this->folder / "taken";
    ASSERT_TRUE(this->files.createFolders(path));
    EXPECT_FALSE(this->files.writeAtomically(path, "x"));
    EXPECT_TRUE(this->files.isDirectory(path));
    EXPECT_EQ(this->sortedList(this->folder), std::vector{path});
}

TYPED_TEST_P(FileSystemContract, KeepsEveryByteOfAName)
{
    for (const std::string name :
         {"with blank", "quote'\"", "line\nfeed", "back\\slash", "%41", "latin \xe9", "-rf",
          ".hidden", "\xe2\x80\xaf"}) {
        const auto path = this->folder / name;
        EXPECT_TRUE(this->files.writeAtomically(path, name));
        EXPECT_EQ(this->sortedList(this->folder), std::vector{path});
        EXPECT_EQ(this->files.read(path), name);
        EXPECT_TRUE(this->files.creationDate(path));
        EXPECT_TRUE(this->files.remove(path));
    }
}

TYPED_TEST_P(FileSystemContract, ListsFilesFoldersAndHiddenEntriesButNotWhatIsBelow)
{
    EXPECT_EQ(this->sortedList(this->folder), std::vector<std::filesystem::path>{});
    ASSERT_TRUE(this->files.createFolders(this->folder / "b" / "c"));
    ASSERT_TRUE(this->files.writeAtomically(this->folder / ".a", ""));
    ASSERT_TRUE(this->files.writeAtomically(this->folder / "b" / "d", ""));
    EXPECT_EQ(
        this->sortedList(this->folder), (std::vector{this->folder / ".a", this->folder / "b"}));
}

TYPED_TEST_P(FileSystemContract, ListsNothingThatIsNoFolder)
{
    EXPECT_FALSE(this->files.list(this->folder / "absent"));
    ASSERT_TRUE(this->files.writeAtomically(this->folder / "file", ""));
    EXPECT_FALSE(this->files.list(this->folder / "file"));
}

TYPED_TEST_P(FileSystemContract, CreatesFoldersWithThoseAbove)
{
    const auto path = this->folder / "a" / "b" / "c";
    EXPECT_TRUE(this->files.createFolders(path));
    EXPECT_TRUE(this->files.createFolders(path)) << "is there already";
    EXPECT_TRUE(this->files.isDirectory(this->folder / "a"));
    EXPECT_TRUE(this->files.isDirectory(path));
}

TYPED_TEST_P(FileSystemContract, CreatesNoFolderWhereAFileIs)
{
    ASSERT_TRUE(this->files.writeAtomically(this->folder / "file", ""));
    EXPECT_FALSE(this->files.createFolders(this->folder / "file"));
    EXPECT_FALSE(this->files.createFolders(this->folder / "file" / "below"));
}

TYPED_TEST_P(FileSystemContract, RemovesAFolderWithAllItHolds)
{
    ASSERT_TRUE(this->files.createFolders(this->folder / "a" / "b"));
    ASSERT_TRUE(this->files.writeAtomically(this->folder / "a" / "b" / "c", ""));
    ASSERT_TRUE(this->files.writeAtomically(this->folder / "ab", ""));
    EXPECT_TRUE(this->files.remove(this->folder / "a"));
    EXPECT_EQ(this->sortedList(this->folder), std::vector{this->folder / "ab"});
}

TYPED_TEST_P(FileSystemContract, FailsToRemoveWhatNeverWas)
{
    EXPECT_FALSE(this->files.remove(this->folder / "absent"));
}

TYPED_TEST_P(FileSystemContract, KnowsNothingOfAnAbsentEntry)
{
    const auto path = this->folder / "absent";
    EXPECT_FALSE(this->files.exists(path));
    EXPECT_FALSE(this->files.isDirectory(path));
    EXPECT_FALSE(this->files.creationDate(path));
    EXPECT_FALSE(this->files.modificationDate(path));
    EXPECT_FALSE(this->files.identity(path));
    EXPECT_FALSE(this->files.size(path));
    EXPECT_FALSE(this->files.read(path));
}

TYPED_TEST_P(FileSystemContract, ReadsNoFolder)
{
    EXPECT_FALSE(this->files.read(this->folder));
    EXPECT_FALSE(this->files.size(this->folder));
}

TYPED_TEST_P(FileSystemContract, DatesANewEntryNow)
{
    using namespace std::chrono_literals;
    const auto path = this->folder / "file";
    const auto before = this->backend.now();
    ASSERT_TRUE(this->files.writeAtomically(path, ""));
    ASSERT_TRUE(this->files.createFolders(this->folder / "sub"));
    for (const auto& entry : {path, this->folder / "sub"}) {
        for (const auto date :
             {this->files.creationDate(entry), this->files.modificationDate(entry)}) {
            ASSERT_TRUE(date);
            // Files are dated by a clock that ticks some hundred times a second.
            EXPECT_GE(*date, before - 20ms);
            EXPECT_LE(*date, this->backend.now());
        }
    }
}

TYPED_TEST_P(FileSystemContract, KnowsAnEntryAgainThatWasRenamed)
{
    const auto path = this->folder / "file";
    ASSERT_TRUE(this->files.writeAtomically(path, "x"));
    const auto identity = this->files.identity(path);
    ASSERT_TRUE(identity);
    EXPECT_EQ(this->files.identity(path), identity);
    ASSERT_TRUE(this->files.createFolders(this->folder / "sub"));
    this->backend.rename(path, this->folder / "sub" / "renamed");
    EXPECT_EQ(this->files.identity(this->folder / "sub" / "renamed"), identity);
    EXPECT_FALSE(this->files.identity(path));
}

TYPED_TEST_P(FileSystemContract, TellsEveryEntryFromTheOthers)
{
    ASSERT_TRUE(this->files.writeAtomically(this->folder / "file", "same bytes"));
    ASSERT_TRUE(this->files.writeAtomically(this->folder / "copy", "same bytes"));
    ASSERT_TRUE(this->files.createFolders(this->folder / "sub"));
    const auto file = this->files.identity(this->folder / "file");
    EXPECT_NE(file, this->files.identity(this->folder / "copy"));
    EXPECT_NE(file, this->files.identity(this->folder / "sub"));
}

TYPED_TEST_P(FileSystemContract, TellsANewEntryFromTheOneWhosePlaceItTakes)
{
    const auto path = this->folder / "file";
    ASSERT_TRUE(this->files.writeAtomically(path, "x"));
    const auto identity = this->files.identity(path);
    this->backend.awaitNextDate();
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(this->files.remove(path));
        ASSERT_TRUE(this->files.writeAtomically(path, "x"));
        EXPECT_NE(this->files.identity(path), identity);
    }
}

TYPED_TEST_P(FileSystemContract, KnowsNoHomeOfAUserWhoIsNotThere)
{
    for (const char* user : {"", "no such user", "a/b", "..", "."})
        EXPECT_FALSE(this->files.homeFolderOf(user)) << user;
}

TYPED_TEST_P(FileSystemContract, NamesAHomeFolderThatIsAbsolute)
{
    EXPECT_TRUE(this->files.homeFolder().is_absolute());
}

TYPED_TEST_P(FileSystemContract, MakesATemporaryFolderOfItsOwnForEveryCall)
{
    const auto first = this->files.makeTemporaryFolder();
    const auto second = this->files.makeTemporaryFolder();
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    for (const auto& made : {*first, *second}) {
        EXPECT_TRUE(made.is_absolute());
        EXPECT_EQ(this->sortedList(made), std::vector<std::filesystem::path>{});
        EXPECT_TRUE(this->files.writeAtomically(made / "file", "x"));
        EXPECT_TRUE(this->files.remove(made));
    }
}

REGISTER_TYPED_TEST_SUITE_P(
    FileSystemContract, ReadsBackWhatWasWritten, ReplacesWhatWasThereAndLeavesNothingBeside,
    WritesAnEmptyFile, WritesNoFileIntoAFolderThatIsNotThere, WritesNoFileInPlaceOfAFolder,
    KeepsEveryByteOfAName, ListsFilesFoldersAndHiddenEntriesButNotWhatIsBelow,
    ListsNothingThatIsNoFolder, CreatesFoldersWithThoseAbove, CreatesNoFolderWhereAFileIs,
    RemovesAFolderWithAllItHolds, FailsToRemoveWhatNeverWas, KnowsNothingOfAnAbsentEntry,
    ReadsNoFolder, DatesANewEntryNow, KnowsAnEntryAgainThatWasRenamed, TellsEveryEntryFromTheOthers,
    TellsANewEntryFromTheOneWhosePlaceItTakes, KnowsNoHomeOfAUserWhoIsNotThere,
    NamesAHomeFolderThatIsAbsolute, MakesATemporaryFolderOfItsOwnForEveryCall);

} // namespace tallowbay::contract
