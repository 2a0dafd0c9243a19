#pragma once

#include "platform/FileEvents.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tallowbay::contract {

// All file events keep their header's promises. A backend offers:
//   FileEvents& events();
//   std::filesystem::path root();       a folder to work in, with the empty folder "watched"
//   void write(path);                   a file with content, written and closed at once
//   void beginWriting(path); void finishWriting(path);
//   void rename(from, to);
//   void remove(path); void makeFolder(path);
//   bool runUntil(condition);           runs the main queue until it holds; false after long
//   void settle();                      runs it until what happened before has been reported
template <typename Backend> class FileEventsContract : public testing::Test {
protected:
    using Path = std::filesystem::path;
    using Paths = std::vector<Path>;

    using Depth = FileEvents::Depth;

    void start() { token = startOn(folder); }
    Subscription startOn(
        const Path& watched, Depth depth = Depth::withSubfolders,
        std::chrono::milliseconds lookBack = {})
    {
        auto started =
            backend.events().start({watched, depth, lookBack}, {[this](const auto& paths) {
                                       reported.insert(reported.end(), paths.begin(), paths.end());
                                   }});
        EXPECT_TRUE(started);
        return started ? std::move(*started) : Subscription();
    }
    bool isReported(const Path& path)
    {
        return backend.runUntil([&] { return std::ranges::count(reported, path) > 0; });
    }

    Backend backend;
    const Path root = backend.root();
    const Path folder = root / "watched";
    Paths reported;
    Subscription token;
};

TYPED_TEST_SUITE_P(FileEventsContract);

TYPED_TEST_P(FileEventsContract, ReportsANewFileOnce)
{
    this->start();
    this->backend.write(this->folder / "new.png");
    EXPECT_TRUE(this->isReported(this->folder / "new.png"));
    this->backend.settle();
    EXPECT_EQ(this->reported, (std::vector{this->folder / "new.png"}));
}

TYPED_TEST_P(FileEventsContract, ReportsEveryFileOfABurst)
{
    this->start();
    std::vector<std::filesystem::path> written;
    for (int i = 100; i < 200; ++i) {
        written.push_back(this->folder / (std::to_string(i) + ".png"));
        this->backend.write(written.back());
    }
    EXPECT_TRUE(this->isReported(written.back()));
    this->backend.settle();
    std::ranges::sort(this->reported);
    EXPECT_EQ(this->reported, written);
}

TYPED_TEST_P(FileEventsContract, ReportsNoFileThatIsThereAlready)
{
    this->backend.write(this->folder / "old.png");
    this->backend.makeFolder(this->folder / "sub");
    this->backend.write(this->folder / "sub" / "old.png");
    this->start();
    this->backend.settle();
    EXPECT_TRUE(this->reported.empty());
}

TYPED_TEST_P(FileEventsContract, ReportsAFileThatIsWrittenAgain)
{
    this->backend.write(this->folder / "old.png");
    this->start();
    this->backend.write(this->folder / "old.png");
    EXPECT_TRUE(this->isReported(this->folder / "old.png"));
}

TYPED_TEST_P(FileEventsContract, ReportsAFileOnceItsWriterIsDone)
{
    this->start();
    this->backend.beginWriting(this->folder / "slow.png");
    this->backend.settle();
    EXPECT_TRUE(this->reported.empty());
    this->backend.finishWriting(this->folder / "slow.png");
    EXPECT_TRUE(this->isReported(this->folder / "slow.png"));
    this->backend.settle();
    EXPECT_EQ(this->reported, (std::vector{this->folder / "slow.png"}));
}

TYPED_TEST_P(FileEventsContract, ReportsAFileThatIsMovedIn)
{
    this->backend.write(this->root / "outside.png");
    this->start();
    this->backend.rename(this->root / "outside.png", this->folder / "inside.png");
    EXPECT_TRUE(this->isReported(this->folder / "inside.png"));
    this->backend.settle();
    EXPECT_EQ(this->reported, (std::vector{this->folder / "inside.png"}));
}

TYPED_TEST_P(FileEventsContract, ReportsTheNewNameOfARenamedFile)
{
    this->backend.write(this->folder / "one.png");
    this->start();
    this->backend.rename(this->folder / "one.png", this->folder / "two.png");
    EXPECT_TRUE(this->isReported(this->folder / "two.png"));
    this->backend.settle();
    EXPECT_EQ(this->reported, (std::vector{this->folder / "two.png"}));
}

TYPED_TEST_P(FileEventsContract, ReportsNothingThatIsMovedOutOrRemoved)
{
    this->backend.write(this->folder / "one.png");
    this->backend.write(this->folder / "two.png");
    this->start();
    this->backend.rename(this->folder / "one.png", this->root / "one.png");
    this->backend.remove(this->folder / "two.png");
    this->backend.settle();
    EXPECT_TRUE(this->reported.empty());
}

TYPED_TEST_P(FileEventsContract, ReportsFilesThatCameJustBeforeTheStartWhereThatIsWanted)
{
    this->backend.makeFolder(this->folder / "sub");
    this->backend.write(this->folder / "old.png");
    this->backend.write(this->folder / "sub" / "old.png");
    this->token =
        this->startOn(this->folder, FileEvents::Depth::folderAlone, std::chrono::minutes(1));
    EXPECT_TRUE(this->isReported(this->folder / "old.png"));
    this->backend.write(this->folder / "new.png");
    EXPECT_TRUE(this->isReported(this->folder / "new.png"));
    EXPECT_EQ(this->reported.size(), 2u);
}

TYPED_TEST_P(FileEventsContract, ReportsNoneThatCameLongBeforeTheStart)
{
    this->backend.write(this->folder / "old.png");
    this->backend.settle();
    this->token =
        this->startOn(this->folder, FileEvents::Depth::folderAlone, std::chrono::milliseconds(100));
    this->backend.write(this->folder / "new.png");
    EXPECT_TRUE(this->isReported(this->folder / "new.png"));
    EXPECT_EQ(this->reported.size(), 1u);
}

TYPED_TEST_P(FileEventsContract, ReportsNothingOfSubfoldersWhereTheFolderAloneIsWatched)
{
    this->backend.makeFolder(this->folder / "old");
    this->token = this->startOn(this->folder, FileEvents::Depth::folderAlone);
    this->backend.makeFolder(this->folder / "new");
    this->backend.write(this->folder / "old" / "one.png");
    this->backend.write(this->folder / "new" / "two.png");
    this->backend.write(this->folder / "here.png");
    EXPECT_TRUE(this->isReported(this->folder / "here.png"));
    this->backend.settle();
    EXPECT_EQ(this->reported, (std::vector{this->folder / "here.png"}));
}

TYPED_TEST_P(FileEventsContract, ReportsFilesOfASubfolder)
{
    this->backend.makeFolder(this->folder / "a" / "b");
    this->start();
    this->backend.write(this->folder / "a" / "b" / "new.png");
    EXPECT_TRUE(this->isReported(this->folder / "a" / "b" / "new.png"));
}

TYPED_TEST_P(FileEventsContract, ReportsFilesOfASubfolderThatIsMadeLater)
{
    this->start();
    this->backend.makeFolder(this->folder / "a" / "b");
    this->backend.write(this->folder / "a" / "b" / "new.png");
    EXPECT_TRUE(this->isReported(this->folder / "a" / "b" / "new.png"));
    this->backend.write(this->folder / "a" / "b" / "later.png");
    EXPECT_TRUE(this->isReported(this->folder / "a" / "b" / "later.png"));
}

TYPED_TEST_P(FileEventsContract, ReportsTheFilesOfAFolderThatIsMovedIn)
{
    this->backend.makeFolder(this->root / "outside");
    this->backend.write(this->root / "outside" / "one.png");
    this->start();
    this->backend.rename(this->root / "outside", this->folder / "inside");
    EXPECT_TRUE(this->isReported(this->folder / "inside" / "one.png"));
    this->backend.write(this->folder / "inside" / "two.png");
    EXPECT_TRUE(this->isReported(this->folder / "inside" / "two.png"));
}

TYPED_TEST_P(FileEventsContract, ReportsNoFolder)
{
    this->start();
    this->backend.makeFolder(this->folder / "folder.png");
    this->backend.settle();
    EXPECT_TRUE(this->reported.empty());
}

TYPED_TEST_P(FileEventsContract, ReportsNothingOfOtherFolders)
{
    this->backend.makeFolder(this->root / "watched too");
    this->start();
    this->backend.write(this->root / "above.png");
    this->backend.write(this->root / "watched too" / "beside.png");
    this->backend.settle();
    EXPECT_TRUE(this->reported.empty());
}

TYPED_TEST_P(FileEventsContract, KeepsEveryByteOfAName)
{
    this->start();
    for (const std::string name : {"with blank", "line\nfeed", "latin \xe9", "'quoted\""}) {
        this->backend.write(this->folder / name);
        EXPECT_TRUE(this->isReported(this->folder / name));
    }
}

TYPED_TEST_P(FileEventsContract, WatchesAFolderAgainThatVanishedAndCameBack)
{
    this->start();
    this->backend.remove(this->folder);
    this->backend.settle();
    this->backend.makeFolder(this->folder);
    this->backend.write(this->folder / "first.png");
    EXPECT_TRUE(this->isReported(this->folder / "first.png"));
    this->backend.write(this->folder / "second.png");
    EXPECT_TRUE(this->isReported(this->folder / "second.png"));
}

TYPED_TEST_P(FileEventsContract, WaitsForAFolderThatIsNotThereYet)
{
    this->backend.remove(this->folder);
    this->start();
    this->backend.settle();
    this->backend.makeFolder(this->folder);
    this->backend.write(this->folder / "first.png");
    EXPECT_TRUE(this->isReported(this->folder / "first.png"));
}

TYPED_TEST_P(FileEventsContract, ReportsNothingOnceTheTokenHasEnded)
{
    this->start();
    this->backend.write(this->folder / "new.png");
    this->token.reset();
    this->backend.write(this->folder / "other.png");
    this->backend.settle();
    EXPECT_TRUE(this->reported.empty());
}

TYPED_TEST_P(FileEventsContract, LetsATokenEndInsideItsOwnHandler)
{
    auto kept = std::make_shared<int>(0);
    const std::weak_ptr watched = kept;
    auto started =
        this->backend.events().start({this->folder}, {[this, kept = std::move(kept)](const auto&) {
                                         this->token.reset();
                                         ++*kept;
                                     }});
    ASSERT_TRUE(started);
    this->token = std::move(*started);
    this->backend.write(this->folder / "new.png");
    EXPECT_TRUE(this->backend.runUntil([&] { return watched.expired(); }));
}

TYPED_TEST_P(FileEventsContract, ServesSeveralStreams)
{
    this->backend.makeFolder(this->folder / "sub");
    this->start();
    auto second = this->startOn(this->folder / "sub");
    this->backend.write(this->folder / "sub" / "new.png");
    EXPECT_TRUE(this->backend.runUntil([this] { return this->reported.size() == 2; }));
    const auto path = this->folder / "sub" / "new.png";
    EXPECT_EQ(this->reported, (std::vector{path, path}));
    second.reset();
    this->backend.write(this->folder / "sub" / "other.png");
    EXPECT_TRUE(this->isReported(this->folder / "sub" / "other.png"));
    this->backend.settle();
    EXPECT_EQ(this->reported.size(), 3u);
}

REGISTER_TYPED_TEST_SUITE_P(
    FileEventsContract, ReportsANewFileOnce, ReportsEveryFileOfABurst,
    ReportsNoFileThatIsThereAlready, ReportsFilesThatCameJustBeforeTheStartWhereThatIsWanted,
    ReportsNoneThatCameLongBeforeTheStart, ReportsNothingOfSubfoldersWhereTheFolderAloneIsWatched,
    ReportsAFileThatIsWrittenAgain, ReportsAFileOnceItsWriterIsDone, ReportsAFileThatIsMovedIn,
    ReportsTheNewNameOfARenamedFile, ReportsNothingThatIsMovedOutOrRemoved,
    ReportsFilesOfASubfolder, ReportsFilesOfASubfolderThatIsMadeLater,
    ReportsTheFilesOfAFolderThatIsMovedIn, ReportsNoFolder, ReportsNothingOfOtherFolders,
    KeepsEveryByteOfAName, WatchesAFolderAgainThatVanishedAndCameBack,
    WaitsForAFolderThatIsNotThereYet, ReportsNothingOnceTheTokenHasEnded,
    LetsATokenEndInsideItsOwnHandler, ServesSeveralStreams);

} // namespace tallowbay::contract
