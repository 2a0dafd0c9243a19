#pragma once

#include "platform/FolderEvents.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// All folder events keep their header's promises. A backend offers what FileEventsContract asks
// for, but for events() and the slow writing:
//   FolderEvents& folderEvents();
template <typename Backend> class FolderEventsContract : public testing::Test {
protected:
    using Path = std::filesystem::path;

    void start()
    {
        auto started = backend.folderEvents().start(folder, [this] { ++calls; });
        ASSERT_TRUE(started);
        token = std::move(*started);
    }
    // Whether there has been a call since the last time that this was asked.
    bool isTold()
    {
        const bool told = backend.runUntil([this] { return calls > 0; });
        backend.settle();
        calls = 0;
        return told;
    }

    Backend backend;
    const Path root = backend.root();
    const Path folder = root / "watched";
    int calls = 0;
    Subscription token;
};

TYPED_TEST_SUITE_P(FolderEventsContract);

TYPED_TEST_P(FolderEventsContract, TellsThatAnEntryCameWentOrChangedItsName)
{
    this->start();
    this->backend.write(this->folder / "one");
    EXPECT_TRUE(this->isTold());
    this->backend.rename(this->folder / "one", this->folder / "two");
    EXPECT_TRUE(this->isTold());
    this->backend.remove(this->folder / "two");
    EXPECT_TRUE(this->isTold());
    this->backend.makeFolder(this->folder / "sub");
    EXPECT_TRUE(this->isTold());
    this->backend.remove(this->folder / "sub");
    EXPECT_TRUE(this->isTold());
}

TYPED_TEST_P(FolderEventsContract, TellsThatAnEntryWasMovedInOrOut)
{
    this->backend.write(this->root / "one");
    this->start();
    this->backend.rename(this->root / "one", this->folder / "one");
    EXPECT_TRUE(this->isTold());
    this->backend.rename(this->folder / "one", this->root / "one");
    EXPECT_TRUE(this->isTold());
}

TYPED_TEST_P(FolderEventsContract, TellsNothingWhileNothingHappens)
{
    this->backend.write(this->folder / "one");
    this->start();
    this->backend.write(this->root / "beside");
    this->backend.settle();
    EXPECT_EQ(this->calls, 0);
}

TYPED_TEST_P(FolderEventsContract, CannotWatchWhatIsNoFolder)
{
    EXPECT_FALSE(this->backend.folderEvents().start(this->root / "absent", [] {}));
    this->backend.write(this->root / "file");
    EXPECT_FALSE(this->backend.folderEvents().start(this->root / "file", [] {}));
}

TYPED_TEST_P(FolderEventsContract, TellsThatTheFolderVanishedAndOfWhatHappensOnceItIsBack)
{
    this->backend.write(this->folder / "one");
    this->start();
    this->backend.remove(this->folder);
    EXPECT_TRUE(this->isTold());
    this->backend.makeFolder(this->folder);
    EXPECT_TRUE(this->isTold());
    this->backend.write(this->folder / "two");
    EXPECT_TRUE(this->isTold());
}

TYPED_TEST_P(FolderEventsContract, TellsNothingOnceTheTokenHasEnded)
{
    this->start();
    this->backend.write(this->folder / "one");
    this->token.reset();
    this->backend.write(this->folder / "two");
    this->backend.settle();
    EXPECT_EQ(this->calls, 0);
}

TYPED_TEST_P(FolderEventsContract, LetsATokenEndInsideItsOwnHandler)
{
    auto kept = std::make_shared<int>(0);
    const std::weak_ptr watched = kept;
    auto started = this->backend.folderEvents().start(this->folder, [this, kept = std::move(kept)] {
        this->token.reset();
        ++*kept;
    });
    ASSERT_TRUE(started);
    this->token = std::move(*started);
    this->backend.write(this->folder / "new");
    EXPECT_TRUE(this->backend.runUntil([&] { return watched.expired(); }));
}

REGISTER_TYPED_TEST_SUITE_P(
    FolderEventsContract, TellsThatAnEntryCameWentOrChangedItsName, TellsThatAnEntryWasMovedInOrOut,
    TellsNothingWhileNothingHappens, CannotWatchWhatIsNoFolder,
    TellsThatTheFolderVanishedAndOfWhatHappensOnceItIsBack, TellsNothingOnceTheTokenHasEnded,
    LetsATokenEndInsideItsOwnHandler);

} // namespace tallowbay::contract
