#include "app/AutomaticCleanup.h"
#include "capture/ScreenshotLocation.h"
#include "platform/DesktopSettings.h"
#include "platform/headless/MemoryUserDefaults.h"
#include "platform/headless/VirtualTime.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using std::filesystem::path;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto limit = 2'592'000s;

bool hasBirthTime(const path& file)
{
    struct statx status { };
    return statx(AT_FDCWD, file.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BTIME, &status) == 0
        && (status.stx_mask & STATX_BTIME) != 0;
}

// Nobody can set when a file was made: it is the clock that is moved.
class CleanupOnDiskTest : public testing::Test {
protected:
    CleanupOnDiskTest()
    {
        std::filesystem::create_directories(optimized);
        std::filesystem::create_directories(originals);
        preferences.set("autoCleanupEnabled", {true});
        preferences.set("autoCleanupOriginalsEnabled", {true});
    }

    static path make(const path& file)
    {
        std::ofstream(file) << "data";
        return file;
    }

    static void setModificationTime(const path& file, std::time_t seconds)
    {
        const timespec times[] = {{seconds, 0}, {seconds, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
    }

    void checkAfter(std::chrono::nanoseconds sinceItWasMade, const path& entry)
    {
        clock.setWall(*files.creationDate(entry) + WallTime::duration(sinceItWasMade));
        cleanup.performCleanupIfNeeded();
        dispatch.runMain();
    }

    // All that was made so far is old then.
    void checkMuchLater()
    {
        clock.setWall(std::chrono::system_clock::now() + limit + 1h);
        cleanup.performCleanupIfNeeded();
        dispatch.runMain();
    }

    // A link counts, wherever it leads.
    static bool exists(const path& entry)
    {
        return std::filesystem::exists(std::filesystem::symlink_status(entry));
    }

    static posix::PosixFileSystem filesAt(const path& home)
    {
        setenv("HOME", home.c_str(), 1);
        return {};
    }

    test::TemporaryFolder home;
    const path optimized = home.path / "Downloads/Tallowbay/optimized";
    const path originals = home.path / "Desktop";
    posix::PosixFileSystem files = filesAt(home.path);
    headless::VirtualClock clock;
    headless::VirtualDispatch dispatch{clock};
    headless::MemoryUserDefaultsStore store;
    UserDefaults& preferences = store.standard();
    DesktopSettings desktop;
    ScreenshotLocation location{store, files, desktop};
    std::vector<AutomaticCleanup::Paths> forgotten;
    AutomaticCleanup cleanup{
        {dispatch, clock, files, preferences, location},
        [this](const AutomaticCleanup::Paths& paths) { forgotten.push_back(paths); }};
};

TEST_F(CleanupOnDiskTest, DeletesByTheTimeAtWhichAFileWasMade)
{
    const auto copy = make(optimized / "Screenshot 1.png");
    checkAfter(limit, copy);
    EXPECT_TRUE(exists(copy));
    checkAfter(limit + 1s, copy);
    EXPECT_FALSE(exists(copy));
    EXPECT_THAT(forgotten, ElementsAre(AutomaticCleanup::Paths{copy}));
}

TEST_F(CleanupOnDiskTest, MindsNoModificationTimeWhereTheTimeOfMakingIsKnown)
{
    const auto copy = make(optimized / "Screenshot 1.png");
    if (!hasBirthTime(copy))
        GTEST_SKIP() << "The file system does not know when a file was made";
    setModificationTime(copy, 0);
    checkAfter(limit, copy);
    EXPECT_TRUE(exists(copy));
}

TEST_F(CleanupOnDiskTest, DeletesOriginalsByName)
{
    const auto original = make(originals / "Screenshot 1.PNG");
    const auto foreign = make(originals / "screenshot 1.png");
    const auto recording = make(originals / "Screen Recording 1.mov");
    checkMuchLater();
    EXPECT_FALSE(exists(original));
    EXPECT_TRUE(exists(foreign));
    EXPECT_TRUE(exists(recording));
}

TEST_F(CleanupOnDiskTest, DeletesHiddenEntriesAndNamesThatAreNoText)
{
    for (const char* name : {".hidden", "latin \xe9", "line\nfeed", "-rf"})
        make(optimized / name);
    checkMuchLater();
    EXPECT_TRUE(std::filesystem::is_empty(optimized));
}

TEST_F(CleanupOnDiskTest, DeletesAFolderWithAllItHolds)
{
    std::filesystem::create_directories(optimized / "folder/below");
    make(optimized / "folder/below/file");
    checkMuchLater();
    EXPECT_FALSE(exists(optimized / "folder"));
    EXPECT_TRUE(exists(optimized));
}

TEST_F(CleanupOnDiskTest, DeletesALinkAndNeverWhatItLeadsTo)
{
    const path outside = home.path / "outside";
    std::filesystem::create_directories(outside);
    const auto file = make(outside / "precious.png");
    std::filesystem::create_directory_symlink(outside, optimized / "folder link");
    std::filesystem::create_symlink(file, optimized / "file link");
    std::filesystem::create_symlink(home.path / "nowhere", optimized / "dangling");
    std::filesystem::create_symlink(file, originals / "Screenshot 1.png");
    checkMuchLater();
    EXPECT_TRUE(std::filesystem::is_empty(optimized));
    EXPECT_FALSE(exists(originals / "Screenshot 1.png"));
    EXPECT_TRUE(exists(file));
}

TEST_F(CleanupOnDiskTest, DeletesNothingBehindALinkBelowAFolder)
{
    const path outside = home.path / "outside";
    std::filesystem::create_directories(outside);
    const auto file = make(outside / "precious.png");
    std::filesystem::create_directories(optimized / "folder");
    std::filesystem::create_directory_symlink(outside, optimized / "folder/link");
    checkMuchLater();
    EXPECT_FALSE(exists(optimized / "folder"));
    EXPECT_TRUE(exists(file));
}

TEST_F(CleanupOnDiskTest, TellsTheAgeOfALinkByTheLinkItself)
{
    const auto file = make(home.path / "old.png");
    setModificationTime(file, 0);
    std::filesystem::create_symlink(file, optimized / "young link");
    checkAfter(limit, optimized / "young link");
    EXPECT_TRUE(exists(optimized / "young link"));
}

TEST_F(CleanupOnDiskTest, GoesOnWithoutItsFolders)
{
    std::filesystem::remove_all(home.path / "Downloads");
    std::filesystem::remove_all(originals);
    checkMuchLater();
    EXPECT_THAT(forgotten, IsEmpty());
}

} // namespace
} // namespace tallowbay
